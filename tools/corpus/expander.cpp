#include "expander.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "inflect.h"

namespace corpus {

namespace {

// Expressions and clauses contain each other. Beyond this depth only the first alternatives of a
// rule are drawn, which in rules of that kind are those that end the recursion.
constexpr int kMaxDepth = 10;
constexpr std::size_t kEndingAlternatives = 3;

// White space as wide as the last line of out, tabs kept.
std::string marginAtEnd(const std::string& out) {
    std::string margin = out.substr(out.rfind('\n') + 1); // npos + 1 is 0
    std::replace_if(
        margin.begin(), margin.end(), [](char c) { return c != '\t'; }, ' ');
    return margin;
}

void appendAligned(const std::string& text, std::string& out) {
    if (text.find('\n') == std::string::npos || text[0] == '\n') {
        out += text;
        return;
    }
    const std::string margin = marginAtEnd(out);
    for (std::size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == '\n' && i + 1 < text.size() && text[i + 1] != '\n') {
            out += margin;
        }
    }
}

} // namespace

std::string Expander::expand(std::string_view text) {
    std::string out;
    append(parseTemplate(text), out);
    return out;
}

void Expander::bind(std::string_view name, std::string value) {
    m_bound.insert_or_assign(std::string(name), std::move(value));
}

const std::string& Expander::bindFrom(std::string_view name, std::string_view text) {
    return m_bound.insert_or_assign(std::string(name), expand(text)).first->second;
}

void Expander::bindSeries(std::string_view stem, int count, std::string_view text) {
    for (int i = 1; i <= count; ++i) {
        std::string name(stem);
        name += std::to_string(i);
        bindFrom(name, text);
    }
}

void Expander::setTopic(int topic, int sharePerMille, int topicWindow) {
    m_topic = topic;
    m_topicShare = sharePerMille;
    m_topicWindow = topicWindow;
}

void Expander::append(const Grammar::Alternative& alternative, std::string& out) {
    ++m_depth;
    for (const Piece& piece : alternative) {
        if (piece.name.empty()) {
            out += piece.literal;
        } else {
            appendAligned(resolve(piece), out);
        }
    }
    --m_depth;
}

std::string Expander::resolve(const Piece& piece) {
    std::string text;
    if (const auto bound = m_bound.find(piece.name); bound != m_bound.end()) {
        text = bound->second;
    } else if (const auto* rule = m_grammar.find(piece.name); rule == nullptr) {
        throw std::logic_error("no rule or value for '$" + piece.name + "'");
    } else if (isOfWords(rule->split)) {
        text = drawWord(piece.name, *rule);
        if (piece.forms.empty() || isTextForm(piece.forms[0])) {
            text = inflect(text, "");
        }
    } else {
        append(drawAlternative(*rule), text);
    }
    for (const std::string& form : piece.forms) {
        text = inflect(text, form);
    }
    return text;
}

const Grammar::Alternative& Expander::drawAlternative(const Grammar::CompiledRule& rule) {
    const std::size_t rank = rule.picker.pick(m_random);
    const bool tooDeep = m_depth > kMaxDepth;
    const std::size_t endingCount = std::min(kEndingAlternatives, rule.alternatives.size());
    return rule.alternatives[tooDeep ? rank % endingCount : rank];
}

std::string Expander::drawWord(std::string_view name, const Grammar::CompiledRule& rule) {
    const auto& words = rule.words;
    if (rule.split == Split::OpenWords && m_random.chance(m_coinedShare)) {
        return resolve({{}, "coined", {}});
    }
    if (words.size() > static_cast<std::size_t>(m_topicWindow) && m_random.chance(m_topicShare)) {
        // The place of the window depends on the list as well, or all lists would move in step.
        Random place(static_cast<std::uint64_t>(m_topic) * 1000 + name.size() * 31 + name[0]);
        const std::uint32_t start = place.below(static_cast<std::uint32_t>(words.size()));
        const std::uint32_t step = m_random.below(static_cast<std::uint32_t>(m_topicWindow));
        return words[(start + step) % words.size()];
    }
    return words[rule.picker.pick(m_random)];
}

} // namespace corpus

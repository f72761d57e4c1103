#include "grammar.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace corpus {

namespace {

// Scaling must not make a list even that was meant to have first words.
unsigned scaledFlatness(unsigned flatness, unsigned percent) {
    return flatness == kEven ? kEven : std::max(kSteep, flatness * percent / 100);
}

} // namespace

Grammar::Grammar(std::initializer_list<RuleBook> books, unsigned flatnessPercent) {
    for (const RuleBook& book : books) {
        for (const Rule& rule : book) {
            auto texts = splitAlternatives(rule.split, rule.text);
            const bool ofWords = isOfWords(rule.split);
            const unsigned flatness =
                ofWords ? scaledFlatness(rule.flatness, flatnessPercent) : rule.flatness;
            CompiledRule compiled{rule.split, RankPicker(texts.size(), flatness), {}, {}};
            if (ofWords) {
                compiled.words = std::move(texts);
            } else {
                std::transform(texts.begin(), texts.end(),
                               std::back_inserter(compiled.alternatives), parseTemplate);
            }
            m_rules.insert_or_assign(std::string(rule.name), std::move(compiled));
        }
    }
}

const Grammar::CompiledRule* Grammar::find(std::string_view name) const {
    const auto found = m_rules.find(name);
    return found == m_rules.end() ? nullptr : &found->second;
}

} // namespace corpus

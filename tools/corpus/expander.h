#pragma once

#include <map>
#include <string>
#include <string_view>

#include "grammar.h"
#include "rng.h"

namespace corpus {

// Draws text from a grammar. It keeps the random state and the bound names of one document.
// All lines of an expansion start in the column of the reference, which keeps generated program
// text in shape; an expansion that begins with a line end starts at the margin instead.
class Expander {
public:
    Expander(const Grammar& grammar, std::uint64_t seed) : m_grammar(grammar), m_random(seed) {}

    // Expands a template text. A name that is neither bound nor a rule is a fault of the
    // templates and throws std::logic_error.
    std::string expand(std::string_view text);

    // From now on $name stands for this text, as it is, also when a rule has the name.
    void bind(std::string_view name, std::string value);

    // Expands the template and binds the result, so that later uses repeat it.
    const std::string& bindFrom(std::string_view name, std::string_view text);

    // Binds stem1, stem2 ... stemN to one expansion each.
    void bindSeries(std::string_view stem, int count, std::string_view text);

    // Chapters, articles and the like are each about something: a part of all draws from a word
    // list falls on the topicWindow words that start at a place peculiar to the topic.
    void setTopic(int topic, int sharePerMille, int topicWindow);

    // This share of all draws from open word lists is a word of the rule "coined" instead:
    // the tail of words that a text uses once or twice and that no list of ours could hold.
    void setCoinedShare(int perMille) { m_coinedShare = perMille; }

    Random& random() { return m_random; }

private:
    void append(const Grammar::Alternative& alternative, std::string& out);
    std::string resolve(const Piece& piece);
    const Grammar::Alternative& drawAlternative(const Grammar::CompiledRule& rule);
    std::string drawWord(std::string_view name, const Grammar::CompiledRule& rule);

    const Grammar& m_grammar;
    Random m_random;
    std::map<std::string, std::string, std::less<>> m_bound;
    int m_topic = 0;
    int m_topicShare = 0;
    int m_topicWindow = 1;
    int m_coinedShare = 0;
    int m_depth = 0;
};

} // namespace corpus

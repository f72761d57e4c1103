#pragma once

#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rng.h"
#include "template_text.h"

namespace corpus {

// How unevenly the alternatives are drawn: the flatness of RankPicker.
constexpr unsigned kEven = 0;
constexpr unsigned kSteep = 1;
constexpr unsigned kZipf = 6;
constexpr unsigned kBroad = 60;

struct Rule {
    std::string_view name;
    Split split;
    unsigned flatness;
    std::string_view text;
};

using RuleBook = std::span<const Rule>;

// A set of text templates that expand each other, the common engine of all text-like files.
// In an alternative, "$name" and "$(name)" stand for one alternative of the rule of that name
// or for a value bound to it, and "$(name:form)" for the same in a word form of inflect.h;
// several forms follow each other with colons.
class Grammar {
public:
    // flatnessPercent scales the flatness of all word lists: below 100 a text uses fewer
    // different words, above 100 more. A later rule replaces an earlier one of the same name.
    Grammar(std::initializer_list<RuleBook> books, unsigned flatnessPercent);

    using Alternative = std::vector<Piece>;

    struct CompiledRule {
        Split split;
        RankPicker picker;
        std::vector<Alternative> alternatives; // of a rule of lines or blocks
        std::vector<std::string> words;        // of a word list
    };

    // The rule, or null when there is none of that name.
    const CompiledRule* find(std::string_view name) const;

private:
    std::map<std::string, CompiledRule, std::less<>> m_rules;
};

} // namespace corpus

// The template engine of the corpus maker.
#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "expander.h"
#include "inflect.h"
#include "textflow.h"

using corpus::Expander;
using corpus::Grammar;
using corpus::Rule;
using corpus::Split;

namespace {

constexpr Rule kRules[] = {
    {"noun", Split::Words, corpus::kEven, "man/men"},
    {"open", Split::OpenWords, corpus::kEven, "listed"},
    {"coined", Split::Lines, corpus::kEven, "new"},
    {"pair", Split::Words, corpus::kEven, "one+word"},
    {"path", Split::Lines, corpus::kEven, "a/b"},
    {"block", Split::Blocks, corpus::kEven, "\nif\n\tx\n\nend"},
    {"tail", Split::Blocks, corpus::kEven, "\n$none\nnext"},
    {"nest", Split::Lines, corpus::kEven,
     "end\nstop\ndone\n($nest $nest)\n"
     "[$nest $nest]\n{$nest $nest}\n<$nest $nest>"},
};

} // namespace

TEST(Inflect, MakesTheFormsOfRegularAndListedWords) {
    struct Case {
        std::string word, form, expected;
    };
    const std::vector<Case> cases{
        {"take/took/taken", "", "take"},
        {"take/took/taken", "ed", "took"},
        {"take/took/taken", "en", "taken"},
        {"take/took/taken", "ing", "taking"},
        {"steal/stole", "en", "stole"},
        {"open", "ed", "opened"},
        {"stop", "ing", "stopping"},
        {"carry", "ed", "carried"},
        {"stay", "ed", "stayed"},
        {"regret", "ed", "regretted"},
        {"see/saw/seen", "ing", "seeing"},
        {"fix", "ing", "fixing"},
        {"box", "pl", "boxes"},
        {"foot/feet", "pl", "feet"},
        {"city", "pl", "cities"},
        {"quay", "pl", "quays"},
        {"branch", "s", "branches"},
        {"simple", "ly", "simply"},
        {"happy", "ly", "happily"},
        {"basic", "ly", "basically"},
        {"big", "er", "bigger"},
        {"mysterious", "er", "more mysterious"},
        {"owl", "an", "an owl"},
        {"a/b", "cap", "A/b"},
        {"half-open door", "id", "half_open_door"},
        {"x1y", "up", "X1Y"},
    };
    for (const Case& given : cases) {
        EXPECT_EQ(corpus::inflect(given.word, given.form), given.expected) << given.word;
    }
    EXPECT_THROW(corpus::inflect("word", "past"), std::logic_error);
}

TEST(Grammar, ExpandsReferencesFormsAndBoundNames) {
    const Grammar grammar({kRules}, 100);
    Expander text(grammar, 1);
    text.bind("bound", "VALUE");
    struct Case {
        std::string text, expected;
    };
    const std::vector<Case> cases{
        {"the $noun, $(noun:pl).", "the man, men."},
        {"$(noun:cap)-$(noun:pl:up)", "Man-MEN"},
        {"$pair costs $$5", "one word costs $5"},
        {"$path $(path:cap)", "a/b A/b"},
        {"$(bound)s $bound", "VALUEs VALUE"},
        // Every line keeps the column of the reference, empty lines stay empty.
        {"  $block;", "  if\n  \tx\n\n  end;"},
        {"\t(a $block)", "\t(a if\n\t   \tx\n\n\t   end)"},
        // An expansion that begins with a line end goes back to the margin.
        {"   a$tail", "   a\nnext"},
    };
    text.bind("none", "");
    for (const Case& given : cases) {
        EXPECT_EQ(text.expand(given.text), given.expected);
    }
    EXPECT_THROW(text.expand("$missing"), std::logic_error);
    EXPECT_THROW(text.expand("$(noun"), std::logic_error);
}

TEST(Grammar, CoinsWordsOnlyWhereAListIsOpen) {
    const Grammar grammar({kRules}, 100);
    Expander text(grammar, 1);
    text.setCoinedShare(1000);
    EXPECT_EQ(text.expand("$open $noun"), "new man");
    text.setCoinedShare(0);
    EXPECT_EQ(text.expand("$open $noun"), "listed man");
}

TEST(Grammar, EndsRecursionAndRepeatsItselfForASeed) {
    const Grammar grammar({kRules}, 100);
    std::set<std::string> results;
    for (int seed = 0; seed < 50; ++seed) {
        Expander first(grammar, static_cast<std::uint64_t>(seed));
        Expander second(grammar, static_cast<std::uint64_t>(seed));
        const std::string text = first.expand("$nest");
        EXPECT_EQ(second.expand("$nest"), text);
        results.insert(text);
    }
    EXPECT_GT(results.size(), 10u);
}

TEST(RankPicker, PrefersTheFirstRanksUnlessEven) {
    struct Case {
        unsigned flatness;
        int firstAtLeast, firstAtMost;
    };
    // Of 10000 draws from ten ranks: 1/1 of 1/1 + ... + 1/10 is 34%, 1/60 of 1/60 + ... 10.7%.
    for (const Case& given : {Case{0, 800, 1200}, Case{1, 3100, 3750}, Case{60, 900, 1250}}) {
        const corpus::RankPicker picker(10, given.flatness);
        corpus::Random random(7);
        std::vector<int> counts(10);
        for (int i = 0; i < 10000; ++i) {
            ++counts.at(picker.pick(random));
        }
        EXPECT_GE(counts[0], given.firstAtLeast) << given.flatness;
        EXPECT_LE(counts[0], given.firstAtMost) << given.flatness;
        EXPECT_GT(counts[9], 0) << given.flatness;
    }
}

TEST(TextFlow, FillsLinesToTheWidthAndFitsToASize) {
    corpus::TextFlow flow(10);
    flow.fill("abcd efghi jklm nopqrs"); // ten columns fit, eleven do not
    flow.fill("incomprehensible");
    flow.line(".sp");
    flow.fill("end");
    flow.endParagraph();
    EXPECT_EQ(flow.text(), "abcd efghi\njklm\nnopqrs\nincomprehensible\n.sp\nend\n");
    EXPECT_EQ(corpus::fitTo("abcdef", 3), "ab\n");
    EXPECT_EQ(corpus::fitTo("ab", 4), "ab\n\n");
}

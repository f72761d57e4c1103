// What one side writes the other reads as it was, and nothing else is taken for a message.
#include <gtest/gtest.h>

#include <limits>

#include "message.h"

namespace compare {
namespace {

// The values differ from each other, so that none can take another's place unseen.
TEST(Message, AnswersKeepAllTheyHold) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const std::pair<Answer, std::string> cases[] = {
        {Hello{{"/a b/libntkdc.so.12", "libntks.so.12"}, "2.0 \"x\""},
         R"({"hello":{"files":["/a b/libntkdc.so.12","libntks.so.12"],"version":"2.0 \"x\""}})"},
        // The parameters in their order, not by name, and with their types.
        {Announced{3, 17, "ntksF", {{"Z", 16384LL}, {"A", "boo\nk"}, {"Rate", 2.0}}},
         R"({"case":{"test":3,"combination":17,"function":"ntksF",)"
         R"("parameters":{"Z":16384,"A":"boo\nk","Rate":2.0}}})"},
        {Taken{-5, "why", {1.0 / 3, 5'000'000'000, 1, 2, 3, 4}},
         R"({"turn":{"status":-5,"failed":"why","clocks":0.3333333333333333,"calls":5000000000,)"
         R"("involuntary":1,"migrations":2,"minor":3,"major":4}})"},
        {Done{{7, "e", 16384.25, {{"Ratio", 0.5}, {"Rate", infinite}}}},
         R"({"done":{"status":7,"unit":"e","units":16384.25,"values":{"Ratio":0.5,"Rate":"inf"}}})"},
        {PassedOver{"too short"}, R"({"passed":"too short"})"},
        {Ready{}, R"({"ready":true})"},
        {End{{"-dX: no test asked for it"}},
         R"({"end":{"remarks":["-dX: no test asked for it"]}})"},
    };
    for (const auto& [message, line] : cases) {
        EXPECT_EQ(toLine(message), line);
        const std::optional<Answer> answer = parseAnswer(line);
        ASSERT_TRUE(answer) << line;
        EXPECT_EQ(toLine(*answer), line);
    }
}

TEST(Message, OneLineWhateverTheNamesHold) {
    const std::string line =
        toLine(Answer(Announced{0, 0, "a\nb\r", {{"\n", std::string("\xff\x00\n", 3)}}}));
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_TRUE(parseAnswer(line));
}

TEST(Message, OrdersKeepAllTheyHold) {
    for (const Word word : {Word::skip, Word::prepare, Word::turn, Word::release, Word::quit}) {
        const std::optional<Order> order = parseOrder(toLine(Order{word, 12, 250}));
        ASSERT_TRUE(order);
        EXPECT_EQ(order->word, word);
        EXPECT_EQ(order->callsPerSpan, word == Word::turn ? 12 : 1);
        EXPECT_EQ(order->spans, word == Word::turn ? 250 : 1);
    }
}

TEST(Message, AnythingElseIsNone) {
    for (const char* const line :
         {"", "{", "[]", "null", "ready", "{}", R"({"ready":false})",
          R"({"ready":true,"passed":""})", R"({"end":true})", R"({"turn":{}})", R"({"turn":[1]})",
          R"({"done":3})", R"({"case":{"test":"x"}})", R"({"hello":{"files":"one","version":"2"}})",
          R"({"passed":3})", "\xff\xfe"}) {
        EXPECT_FALSE(parseAnswer(line)) << line;
    }
    for (const char* const line : {"", "skip", "{}", R"({"order":"go"})", R"({"order":7})",
                                   R"({"order":"turn","calls":"many"})"}) {
        EXPECT_FALSE(parseOrder(line)) << line;
    }
}

} // namespace
} // namespace compare

// What one side writes the other reads as it was, and nothing else is taken for a message.
#include <gtest/gtest.h>

#include "message.h"

namespace compare {
namespace {

template <class T> T roundTrip(const T& message) {
    const std::optional<Answer> answer = parseAnswer(toLine(Answer(message)));
    EXPECT_TRUE(answer && std::holds_alternative<T>(*answer)) << toLine(Answer(message));
    return answer && std::holds_alternative<T>(*answer) ? std::get<T>(*answer) : T{};
}

TEST(Message, AnswersKeepAllTheyHold) {
    const Hello hello = roundTrip(Hello{{"/a b/libntkdc.so.12", "libntks.so.12"}, "2.0 \"x\""});
    EXPECT_EQ(hello.files, (std::vector<std::string>{"/a b/libntkdc.so.12", "libntks.so.12"}));
    EXPECT_EQ(hello.version, "2.0 \"x\"");

    const Announced announced =
        roundTrip(Announced{3, 17, "ntksF", {{"Z", 16384LL}, {"A", "boo\nk"}, {"Rate", 2.5}}});
    EXPECT_EQ(announced.test, 3);
    EXPECT_EQ(announced.combination, 17);
    EXPECT_EQ(announced.function, "ntksF");
    ASSERT_EQ(announced.parameters.size(), 3u);
    EXPECT_EQ(announced.parameters[0].name, "Z"); // in their order, not by name
    EXPECT_EQ(announced.parameters[0].value, Value(16384LL));
    EXPECT_EQ(announced.parameters[1].value, Value("boo\nk"));
    EXPECT_EQ(announced.parameters[2].value, Value(2.5));

    const Taken taken = roundTrip(Taken{-5, "why", {1234.0 / 7, 5'000'000'000, 1, 2, 3, 4}});
    EXPECT_EQ(taken.status, -5);
    EXPECT_EQ(taken.failed, "why");
    EXPECT_EQ(taken.turn.clocks, 1234.0 / 7);
    EXPECT_EQ(taken.turn.calls, 5'000'000'000);
    EXPECT_EQ(taken.turn.involuntarySwitches, 1);
    EXPECT_EQ(taken.turn.migrations, 2);
    EXPECT_EQ(taken.turn.minorFaults, 3);
    EXPECT_EQ(taken.turn.majorFaults, 4);

    const double zero = 0;
    const Done done = roundTrip(Done{{7, "e", 16384.25, {{"Ratio", 1.0 / 3}, {"Rate", 1 / zero}}}});
    EXPECT_EQ(done.outcome.status, 7);
    EXPECT_EQ(done.outcome.unit, "e");
    EXPECT_EQ(done.outcome.unitsPerCall, 16384.25);
    EXPECT_EQ(done.outcome.values.at(0).value, Value(1.0 / 3));
    EXPECT_EQ(done.outcome.values.at(1).value, Value("inf"));

    EXPECT_EQ(roundTrip(PassedOver{"too short"}).why, "too short");
    roundTrip(Ready{});
    EXPECT_EQ(roundTrip(End{{"-dX: no test asked for it"}}).remarks.at(0),
              "-dX: no test asked for it");
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

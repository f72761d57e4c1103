#include "judge.h"

#include <gtest/gtest.h>

#include <cmath>

namespace compare {
namespace {

TEST(OutputDifference, NamesEachValueThatDiffers) {
    const double nan = std::nan("");
    const struct {
        NamedValues base, changed;
        std::string text;
    } rows[] = {
        {{}, {}, ""},
        {{{"Length", 5LL}, {"Ratio", 1.5}}, {{"Ratio", 1.5}, {"Length", 5LL}}, ""},
        {{{"Ratio", 1.85}}, {{"Ratio", 1.79}}, "Ratio 1.85 -> 1.79"},
        {{{"Ratio", 1.8512}}, {{"Ratio", 1.8538}}, "Ratio 1.851 -> 1.854"},
        {{{"Ratio", 2.0}}, {{"Ratio", 2.000004}}, "Ratio 2.000000 -> 2.000004"},
        {{{"Error", 1e-9}}, {{"Error", 2e-9}}, "Error 0.000000001 -> 0.000000002"},
        {{{"Ratio", 2.0}}, {{"Ratio", 3.0}}, "Ratio 2 -> 3"},
        {{{"Ratio", nan}}, {{"Ratio", nan}}, ""},
        {{{"Ratio", nan}}, {{"Ratio", 1.5}}, "Ratio nan -> 1.50"},
        {{{"Length", 5LL}}, {{"Length", 5.0}}, ""},
        {{{"Length", 5LL}}, {{"Length", 5.25}}, "Length 5.00 -> 5.25"},
        {{{"Length", 9007199254740993LL}},
         {{"Length", 9007199254740992LL}},
         "Length 9007199254740993 -> 9007199254740992"},
        {{{"Mode", "fast"}}, {{"Mode", "fast"}}, ""},
        {{{"Mode", "fast"}}, {{"Mode", "5"}}, "Mode fast -> 5"},
        {{{"Length", 5LL}, {"Ratio", 1.25}},
         {{"Length", 6LL}, {"Parts", 3LL}},
         "Length 5 -> 6, Ratio 1.25 -> none, Parts none -> 3"},
    };
    for (const auto& row : rows) {
        Case measured;
        measured.outcome.base.values = row.base;
        measured.outcome.changed.values = row.changed;
        EXPECT_EQ(outputDifference(measured), row.text);
    }
}

TEST(OutputDifference, NamesStatusAndUnits) {
    Case measured;
    measured.outcome.base = {0, "byte", 65536, {{"Length", 10LL}}};
    measured.outcome.changed = measured.outcome.base;
    EXPECT_EQ(outputDifference(measured), "");
    measured.outcome.changed.status = -13;
    measured.outcome.changed.unitsPerCall = 65000;
    measured.outcome.changed.values = {{"Length", 11LL}};
    EXPECT_EQ(outputDifference(measured),
              "status 0 -> -13, Length 10 -> 11, units per call 65536 -> 65000");
    measured.outcome.changed = {0, "element", 65536, {{"Length", 10LL}}};
    EXPECT_EQ(outputDifference(measured), "unit byte -> element");
}

TEST(OutputDifference, OfOtherParametersIsTheStatusOnly) {
    Case measured;
    measured.parameters = {{{"Length", 1000LL}}, {{"Length", 2000LL}}};
    measured.outcome.base = {0, "byte", 1000, {{"Size", 10LL}}};
    measured.outcome.changed = {0, "byte", 2000, {{"Size", 20LL}}};
    EXPECT_EQ(outputDifference(measured), "");
    measured.outcome.changed.status = 4;
    EXPECT_EQ(outputDifference(measured), "status 0 -> 4");
}

} // namespace
} // namespace compare

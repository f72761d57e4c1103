#include <gtest/gtest.h>

#include "handmade.h"

namespace compare {

namespace {

const std::string names =
    "function,parameters,new_parameters,base_clocks,new_clocks,unit,ratio,ratio_low,ratio_high,p,"
    "p_adjusted,verdict,starts,rounds,seconds,stop,disturbed_share,base_status,new_status,"
    "output_difference,failed_side,failure,complete\r\n";

std::string textOf(const Handmade& handmade) {
    return csvText(handmade.comparison, handmade.judgement);
}

TEST(Csv, AMeasuredCaseHasAllItsFigures) {
    Handmade handmade;
    handmade.add("ntksX_8u", 2.5, 2.25, 2.75, Verdict::slower);
    handmade.lastEffect().interval = {0, -std::log(2.0), std::log(2.0)};
    handmade.lastEffect().disturbedShare = 0.125;
    Case& measured = handmade.comparison.cases[0];
    measured.outcome.changed.status = 4;
    measured.parameters.changed[1].value = "a \"b\", c\r\nd";
    EXPECT_EQ(textOf(handmade),
              names + "ntksX_8u,CodeLength=16384 CodeFile=book1,"
                      "\"CodeLength=16384 CodeFile=a \"\"b\"\", c\r\nd\",4,4.1,e,1,0.5,2,0.001,"
                      "0.002,slower,1,1,0.25,precise,0.125,0,4,status 0 -> 4,,,yes\r\n");
}

TEST(Csv, WhatWasNotMeasuredHasNoFigures) {
    Handmade handmade;
    handmade.addFailed("ntksX_8u", Side::changed).failures.push_back({Side::base, "hung", ""});
    handmade.addLeftOut(Stop::passedOver, "too short");
    handmade.addLeftOut(Stop::budget);
    handmade.addBegun("ntksY_8u");
    handmade.lastEffect().interval.estimate = 0;
    handmade.comparison.isComplete = false;
    EXPECT_EQ(textOf(handmade),
              names + "ntksX_8u,,,,,,,,,,,failed,0,0,0,failed,,,,,new base,"
                      "\"killed by SIGSEGV in a turn\nfirst line\nlast line\nhung\",no\r\n"
                      "ntksLeft_8u,,,,,,,,,,,passed over,0,0,0,passed over,,,,,,,no\r\n"
                      "ntksLeft_8u,,,,,,,,,,,not reached,0,0,0,budget,,,,,,,no\r\n"
                      "ntksY_8u,CodeLength=16384 CodeFile=book1,,4,4.04,e,1,,,0.001,0.002,open,"
                      "1,1,0.25,precise,0,0,0,,,,no\r\n");
}

} // namespace

} // namespace compare

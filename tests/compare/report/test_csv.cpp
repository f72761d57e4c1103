#include <gtest/gtest.h>

#include <map>

#include "handmade.h"

namespace compare {

namespace {

using Record = std::vector<std::string>;

// As RFC 4180 describes it, without mercy for anything else.
std::vector<Record> readCsv(const std::string& text) {
    std::vector<Record> records = {{""}};
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string& cell = records.back().back();
        const bool isPair = text.compare(i, 2, isQuoted ? "\"\"" : "\r\n") == 0;
        if (isQuoted && isPair) {
            cell += text[i++];
        } else if (text[i] == '"') {
            EXPECT_TRUE(isQuoted || cell.empty()) << "a quote within a cell at " << i;
            isQuoted = !isQuoted;
        } else if (!isQuoted && isPair) {
            records.push_back({""});
            ++i;
        } else if (!isQuoted && text[i] == ',') {
            records.back().emplace_back();
        } else {
            cell += text[i];
        }
    }
    EXPECT_FALSE(isQuoted);
    EXPECT_EQ(records.back(), Record{""}) << "the last line has no end";
    records.pop_back();
    return records;
}

std::vector<std::map<std::string, std::string>> rowsOf(const Handmade& handmade) {
    const auto records = readCsv(csvText(handmade.comparison, handmade.judgement));
    std::vector<std::map<std::string, std::string>> rows;
    for (std::size_t i = 1; i < records.size(); ++i) {
        EXPECT_EQ(records[i].size(), records[0].size()) << i;
        for (std::size_t column = 0; column < records[i].size(); ++column) {
            rows.resize(i);
            rows.back()[records[0][column]] = records[i][column];
        }
    }
    return rows;
}

TEST(Csv, AMeasuredCaseReadsBack) {
    Handmade handmade;
    handmade.add("ntksX_8u", 2.5, 2.25, 2.75, Verdict::slower);
    handmade.lastEffect().disturbedShare = 0.125;
    Case& measured = handmade.comparison.cases[0];
    measured.outcome.changed.status = 4;
    measured.parameters.changed[1].value = "a \"b\", c\r\nd";
    const auto rows = rowsOf(handmade);
    ASSERT_EQ(rows.size(), 1u);
    const std::map<std::string, std::string> expected = {
        {"function", "ntksX_8u"},
        {"parameters", "CodeLength=16384 CodeFile=book1"},
        {"new_parameters", "CodeLength=16384 CodeFile=a \"b\", c\r\nd"},
        {"base_clocks", "4"},
        {"new_clocks", "4.1"},
        {"unit", "e"},
        {"p", "0.001"},
        {"p_adjusted", "0.002"},
        {"verdict", "slower"},
        {"starts", "1"},
        {"rounds", "1"},
        {"seconds", "0.25"},
        {"stop", "precise"},
        {"disturbed_share", "0.125"},
        {"base_status", "0"},
        {"new_status", "4"},
        {"output_difference", "status 0 -> 4"},
        {"failed_side", ""},
        {"failure", ""},
        {"complete", "yes"}};
    for (const auto& [name, text] : expected) {
        EXPECT_EQ(rows[0].at(name), text) << name;
    }
    EXPECT_DOUBLE_EQ(std::stod(rows[0].at("ratio")), 1.025);
    EXPECT_DOUBLE_EQ(std::stod(rows[0].at("ratio_low")), 1.0225);
    EXPECT_DOUBLE_EQ(std::stod(rows[0].at("ratio_high")), 1.0275);
}

TEST(Csv, WhatWasNotMeasuredHasNoFigures) {
    Handmade handmade;
    handmade.addFailed("ntksX_8u", Side::changed).failures.push_back({Side::base, "hung", ""});
    handmade.addLeftOut(Stop::passedOver, "too short");
    handmade.addLeftOut(Stop::budget);
    handmade.add("ntksY_8u", 1, 0, 0, Verdict::open);
    handmade.lastEffect().interval.low = -infinite;
    handmade.lastEffect().interval.high = infinite;
    handmade.comparison.isComplete = false;
    const auto rows = rowsOf(handmade);
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].at("complete"), "no");
    EXPECT_EQ(rows[0].at("verdict"), "failed");
    EXPECT_EQ(rows[0].at("failed_side"), "new base");
    EXPECT_EQ(rows[0].at("failure"), "killed by SIGSEGV in a turn\nfirst line\nlast line\nhung");
    EXPECT_EQ(rows[1].at("verdict"), "passed over");
    EXPECT_EQ(rows[2].at("verdict"), "not reached");
    for (const char* name : {"base_clocks", "ratio", "ratio_low", "p", "base_status"}) {
        EXPECT_EQ(rows[0].at(name), "") << name;
    }
    EXPECT_EQ(rows[3].at("ratio_low"), "");
    EXPECT_EQ(rows[3].at("ratio_high"), "");
    EXPECT_DOUBLE_EQ(std::stod(rows[3].at("ratio")), 1.01);
}

} // namespace

} // namespace compare

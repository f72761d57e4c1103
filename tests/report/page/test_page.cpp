#include "page.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "data.h"
#include "reports.h"

using namespace report;
using Json = nlohmann::json;

namespace {

// The objects of a table of the data.
std::vector<Json> objects(const Json& table) {
    std::vector<Json> list;
    for (const Json& row : table["rows"]) {
        EXPECT_EQ(row.size(), table["columns"].size());
        Json object;
        for (std::size_t i = 0; i < row.size(); ++i) {
            object[table["columns"][i].get<std::string>()] = row[i];
        }
        list.push_back(object);
    }
    return list;
}

TEST(PageData, CasesKeepTheirFigures) {
    const Report report = made::plain();
    const std::vector<Json> cases = objects(Json::parse(pageData(report))["cases"]);
    ASSERT_EQ(cases.size(), report.groups[0].cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Case& original = report.groups[0].cases[i];
        EXPECT_EQ(cases[i]["function"], original.function);
        EXPECT_EQ(cases[i]["median"], original.median);
        EXPECT_EQ(cases[i]["largest"], original.largest);
        EXPECT_EQ(cases[i]["length"], *original.length);
        ASSERT_EQ(cases[i]["samples"].size(), 3U);
        EXPECT_EQ(cases[i]["samples"][2], Json({2, original.samples[2].clocksPerUnit}));
    }
}

TEST(PageData, WhatIsNoNumberIsNull) {
    Report report = made::plain(1);
    Case& first = report.groups[0].cases[0];
    first.samples.clear();
    first.ratio = std::numeric_limits<double>::quiet_NaN();
    first.spread = std::numeric_limits<double>::infinity();
    const Json row = objects(Json::parse(pageData(report))["cases"])[0];
    for (const char* name : {"median", "smallest", "largest", "ratio", "spread"}) {
        EXPECT_TRUE(row[name].is_null()) << name;
    }
}

TEST(PageData, TestsAndLinesThatFailedAreToldOnce) {
    Report report = made::faults();
    auto& run = report.runs[0];
    Measurement ofATable;
    ofATable.function = "ntksOfATable_8u";
    ofATable.result = "FUNCFAIL";
    ofATable.comment = "SIGABRT";
    ofATable.parameters = {{"Length", 1000LL}};
    run.measurements.push_back(ofATable);
    run.tests.push_back({"ntksGood_8u", "Timgood", "OK", "", 1});
    run.tests.push_back({"ntksTalks_8u", "Timtalk", "OK", "-- Can't open file nosuch to read", 1});
    std::set<std::string> functions;
    const Json failures = Json::parse(pageData(report))["failures"];
    for (const Json& failure : failures) {
        EXPECT_TRUE(functions.insert(failure["function"]).second) << failure;
    }
    EXPECT_EQ(functions.size(), 13U); // eleven results, the line of the table, the good one's words
    EXPECT_EQ(functions.count("ntksGood_8u"), 0U);
    EXPECT_EQ(failures.back()["what"], "Length=1000");
    EXPECT_EQ(failures.back()["message"], "SIGABRT");
}

TEST(PageData, OfManyFailedMeasurementsOfATestTheFirstAreTold) {
    Report report = made::plain(1);
    auto& run = report.runs[0];
    run.tests = {{"ntksBad_8u", "Timbad", "FUNCFAIL", "words", 0}};
    for (long long length = 1; length <= 5; ++length) {
        Measurement failed;
        failed.function = "ntksBad_8u";
        failed.result = "FUNCFAIL";
        failed.parameters = {{"CodeLength", length}};
        run.measurements.push_back(failed);
    }
    const Json failures = Json::parse(pageData(report))["failures"];
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0]["what"], "Timbad\nCodeLength=1\nCodeLength=2\nCodeLength=3\nand 2 more");
}

TEST(PageData, TextsCannotEndTheElement) {
    const std::string data = pageData(made::hostile());
    EXPECT_EQ(data.find('<'), std::string::npos);
    const Json read = Json::parse(data); // and what is no UTF-8 does not break it
    EXPECT_EQ(read["remarks"][0], made::hostileFile);
    const std::string comment = objects(read["cases"])[0]["comment"];
    EXPECT_TRUE(comment.starts_with("</script>")) << comment;
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t times = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++times;
    }
    return times;
}

TEST(Page, HasAllThatItNeedsInside) {
    const std::string page = pageText(made::twoBuilds());
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(count(page, "Released under the MIT License"), 0U); // the notice of Chart.js
    for (const char* outside : {"<link", "src=\"", "@import", "url(", "fetch(", "XMLHttpRequest"}) {
        EXPECT_EQ(count(page, outside), 0U) << outside;
    }
    EXPECT_EQ(count(page, "</html>"), 1U);
}

// Data that look like a place of the template are left alone.
TEST(Page, DataAreNoTemplate) {
    Report report = made::plain(1);
    report.remarks = {"/*page.js*/ /*data*/ /*chart.js*/"};
    const std::string page = pageText(report);
    EXPECT_EQ(count(page, "/*page.js*/"), 1U);
    EXPECT_EQ(count(page, "/*data*/"), 1U);
    EXPECT_EQ(count(page, "</html>"), 1U);
}

} // namespace

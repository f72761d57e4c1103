#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model.h"
#include "overview.h"

// What the terminal and Markdown say alike.
namespace report {

// Three significant digits and no exponent, as in the table: "0.0541", "4.92", "14.2", "1320".
std::string shortText(double number);
std::string shortText(const std::optional<double>& number); // nothing: ""
// "16K", "21504", "1M".
std::string lengthText(double bytes);
// "CodeLength=16384 CodeFile=bib", of a file the name only.
std::string parametersText(const Case& one);

// Where, with what and when the runs of a group were measured, and how many there are.
std::vector<std::string> factsOf(const Report& report, const Group& group);
// Of a comparison.
std::vector<std::string> factsOf(const Comparison& comparison);
// What failed, in the words of the program: a line each.
std::vector<std::string> failuresOf(const Report& report, const Group& group);
// How much the figures spread; empty: no file tells.
std::string spreadText(const std::vector<FunctionOverview>& functions);

// What is worth to be shown: what failed, then what changed by how much it did; the others are
// only counted.
std::vector<const ComparedCase*> changesOf(const Comparison& comparison);
// "3 slower, 1 faster, 271 same, 397 open".
std::string countsText(const Comparison& comparison);
// "+1.02%  [+0.80%, +1.24%]", of ratios new / base.
std::string differenceText(const std::optional<double>& ratio, const std::optional<double>& low,
                           const std::optional<double>& high);

// The groups to be shown. Of many builds in one series only the last that was named: what came of
// the others is a history, which the page has.
std::vector<const Group*> shownGroups(const Report& report);
// "5 earlier builds ..."; empty: all are shown.
std::string hiddenText(const Report& report);

} // namespace report

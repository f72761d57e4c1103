#include "words.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "cases.h"
#include "columns.h"
#include "numbers.h"
#include "statistics.h"

namespace report {

namespace {

std::string fileName(const common::NamedValue& parameter) {
    const std::string text = common::valueText(parameter.value);
    return parameter.name.ends_with("File") ? text.substr(text.rfind('/') + 1) : text;
}

std::string libraryText(const LibraryFacts& library) {
    return common::joined({common::joined({library.name, library.version}, " "), library.date},
                          ", ");
}

std::string machineText(const Facts& facts) {
    const std::string count = std::to_string(facts.processors);
    const std::string ticks = shortText(facts.ticksMHz / 1000);
    const std::string& name = facts.kind.empty() ? facts.computer : facts.kind;
    return common::joined({facts.processor, facts.processors > 0 ? "x" + count : "",
                           facts.ticksMHz > 0 ? "at " + ticks + " GHz" : "",
                           name.empty() ? "" : "(" + name + ")"},
                          " ");
}

// "1 run, Sun Nov 22 03:44:21 2026", "3 runs, 2026-11-22T03:36:15 to 2026-11-22T04:10:11".
std::string runsText(const Report& report, const Group& group) {
    std::vector<std::string> starts;
    int incomplete = 0;
    for (const int index : group.runs) {
        const Run& run = report.runs[static_cast<std::size_t>(index)];
        starts.push_back(run.facts.started);
        incomplete += !run.isComplete;
    }
    const std::string count = common::countText(static_cast<long long>(starts.size()), "run");
    const std::string span = starts.size() > 1
                                 ? common::joined({starts.front(), starts.back()}, " to ")
                                 : starts.front();
    return common::joined(
        {count, span, incomplete > 0 ? std::to_string(incomplete) + " not to its end" : ""}, ", ");
}

// "ntksX Length=1 : FUNCFAIL, comment".
std::string failureText(const std::string& what, const std::string& result,
                        const std::string& message) {
    return what + ": " + common::joined({result, message}, ", ");
}

int rankOf(const ComparedCase& one) {
    if (one.verdict == "failed") {
        return 0;
    }
    return one.verdict == "slower" ? 1 : one.verdict == "faster" ? 2 : 3;
}

} // namespace

std::string shortText(double number) {
    if (!std::isfinite(number)) {
        return "?";
    }
    char rounded[40]; // first: 9.999 is 10.0, not 10.00
    std::snprintf(rounded, sizeof rounded, "%.2e", number);
    const double value = std::strtod(rounded, nullptr);
    const int digits = value > 0 ? static_cast<int>(std::floor(std::log10(value) + 1e-9)) : 0;
    char text[400];
    std::snprintf(text, sizeof text, "%.*f", std::clamp(2 - digits, 0, 9), value);
    return text;
}

std::string shortText(const std::optional<double>& number) {
    return number ? shortText(*number) : "";
}

std::string lengthText(double bytes) {
    for (const auto& [unit, size] : {std::pair("M", 1048576.0), std::pair("K", 1024.0)}) {
        if (bytes >= size && std::fmod(bytes, size) == 0) {
            return common::exactText(bytes / size) + unit;
        }
    }
    return common::exactText(bytes);
}

std::string parametersText(const Case& one) {
    std::vector<std::string> words;
    for (const common::NamedValue& parameter : one.parameters) {
        words.push_back(parameter.name + "=" + fileName(parameter));
    }
    return common::joined(words, " ");
}

std::vector<std::string> factsOf(const Report& report, const Group& group) {
    const Facts& facts = report.runs[static_cast<std::size_t>(group.runs.front())].facts;
    std::vector<std::string> libraries;
    for (const LibraryFacts& library : facts.libraries) {
        libraries.push_back(libraryText(library));
    }
    return {runsText(report, group), machineText(facts), common::joined(libraries, "; ")};
}

std::vector<std::string> factsOf(const Comparison& comparison) {
    return {comparison.changed + " against " + comparison.base,
            common::joined({comparison.started, comparison.machine}, ", "),
            comparison.medianHalfWidth
                ? "Half of the differences are known to " +
                      common::widthText(*comparison.medianHalfWidth) + " or better"
                : "",
            comparison.ratio ? "On the whole " +
                                   differenceText(comparison.ratio, comparison.low, comparison.high)
                             : "",
            comparison.isComplete ? "" : "It did not come to its end"};
}

std::vector<std::string> failuresOf(const Report& report, const Group& group) {
    std::vector<std::string> lines;
    for (const Case& one : group.cases) {
        if (isFailure(one.result)) {
            lines.push_back(failureText(common::joined({one.function, parametersText(one)}, " "),
                                        one.result, one.comment));
        }
    }
    // What only the end of a test tells: its preparation failed, say.
    std::map<std::string, int> tests;
    for (const int index : group.runs) {
        for (const TestResult& test : report.runs[static_cast<std::size_t>(index)].tests) {
            if (isFailure(test.result)) {
                const std::string line = failureText(test.function, test.result, test.message);
                if (tests[line]++ == 0) {
                    lines.push_back(line);
                }
            }
        }
    }
    return lines;
}

std::string spreadText(const std::vector<FunctionOverview>& functions) {
    std::vector<double> spreads;
    const Case* widest = nullptr;
    for (const FunctionOverview& function : functions) {
        for (const Case* one : function.cases) {
            if (one->spread) {
                spreads.push_back(*one->spread);
                widest = widest && *widest->spread >= *one->spread ? widest : one;
            }
        }
    }
    if (!widest) {
        return "";
    }
    std::sort(spreads.begin(), spreads.end());
    const auto above =
        spreads.end() - std::upper_bound(spreads.begin(), spreads.end(), ordinarySpread);
    return "Spread: median " + common::widthText(quantile(spreads, 0.5)) + "; above " +
           common::settingText(ordinarySpread) + " in " + std::to_string(above) + " of " +
           common::countText(static_cast<long long>(spreads.size()), "case") + "; largest " +
           common::widthText(*widest->spread) + ", " + widest->function + " " +
           parametersText(*widest);
}

std::vector<const ComparedCase*> changesOf(const Comparison& comparison) {
    std::vector<const ComparedCase*> changes;
    for (const ComparedCase& one : comparison.cases) {
        if (rankOf(one) < 3) {
            changes.push_back(&one);
        }
    }
    const auto size = [](const ComparedCase& one) {
        return one.ratio && *one.ratio > 0 ? std::fabs(std::log(*one.ratio)) : 0;
    };
    std::stable_sort(
        changes.begin(), changes.end(), [&](const ComparedCase* one, const ComparedCase* other) {
            return std::pair(rankOf(*one), -size(*one)) < std::pair(rankOf(*other), -size(*other));
        });
    return changes;
}

std::string countsText(const Comparison& comparison) {
    static const char* const verdicts[] = {"failed", "slower",      "faster",     "same",
                                           "open",   "passed over", "not reached"};
    std::map<std::string, int> counts;
    for (const ComparedCase& one : comparison.cases) {
        ++counts[one.verdict];
    }
    std::vector<std::string> words;
    for (const char* verdict : verdicts) {
        if (counts[verdict] > 0) {
            words.push_back(std::to_string(counts[verdict]) + " " + verdict);
        }
    }
    return common::joined(words, ", ");
}

std::string differenceText(const std::optional<double>& ratio, const std::optional<double>& low,
                           const std::optional<double>& high) {
    const auto text = [](const std::optional<double>& one) {
        return one && *one > 0 ? common::percentText(std::log(*one)) : "?";
    };
    return ratio ? text(ratio) + "  [" + text(low) + ", " + text(high) + "]" : "";
}

std::vector<const Group*> shownGroups(const Report& report) {
    constexpr int mostBuilds = 3;
    std::map<int, int> builds, last;
    for (std::size_t i = 0; i < report.groups.size(); ++i) {
        ++builds[report.groups[i].series];
        last[report.groups[i].series] = static_cast<int>(i);
    }
    std::vector<const Group*> shown;
    for (std::size_t i = 0; i < report.groups.size(); ++i) {
        const Group& group = report.groups[i];
        if (builds[group.series] <= mostBuilds || last[group.series] == static_cast<int>(i)) {
            shown.push_back(&group);
        }
    }
    return shown;
}

std::string hiddenText(const Report& report) {
    const std::size_t hidden = report.groups.size() - shownGroups(report).size();
    return hidden > 0 ? common::countText(static_cast<long long>(hidden), "build") +
                            " before the last one: --html shows the history"
                      : "";
}

} // namespace report

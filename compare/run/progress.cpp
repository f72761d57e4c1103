#include "progress.h"

#include <algorithm>
#include <cstdio>

namespace compare {

namespace {

std::string inWords(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* whole = std::get_if<long long>(&value)) {
        return std::to_string(*whole);
    }
    char text[32];
    snprintf(text, sizeof text, "%g", std::get<double>(value));
    return text;
}

} // namespace

double workLeft(const Looks& looks, int pass, int visited, int cases, double secondsPerCase) {
    const int visits = cases * (looks.last() - pass + 1) - visited;
    return visits * secondsOfPass(looks, secondsPerCase);
}

Progress progressOf(const std::string& caseName, const Work& work, double secondsSoFar,
                    double budgetLeft) {
    // A second that takes as long as planned is added: the first visits say little of the others.
    const double pace = (secondsSoFar + 1) / (work.done + 1);
    const double left = std::clamp(work.left * pace, 0.0, std::max(budgetLeft, 0.0));
    const double all = secondsSoFar + left;
    return {caseName, all > 0 ? secondsSoFar / all : 0, left};
}

std::string caseName(const Case& named) {
    std::string name = named.function;
    for (const NamedValue& parameter : named.parameters.base) {
        name += " " + parameter.name + "=" + inWords(parameter.value);
    }
    return name;
}

} // namespace compare

#include "csv.h"

#include <algorithm>
#include <cmath>

#include "delimited.h"
#include "numbers.h"

// The columns stay as they are; new ones come behind them. Parameters have one column each, which
// would depend on what was measured, so they are one text.
namespace report {

namespace {

using common::csvLine;
using common::exactText;

std::string textOf(const std::optional<double>& number) {
    return number ? exactText(*number) : "";
}

std::string kindText(Case::Kind kind) {
    return kind == Case::Kind::encoder ? "encoder" : kind == Case::Kind::decoder ? "decoder" : "";
}

// Clocks per byte of uncompressed data.
std::string perByteText(const Case& one) {
    const bool isKnown = !one.samples.empty() && one.bytesPerUnit && *one.bytesPerUnit > 0;
    return isKnown ? exactText(one.median / *one.bytesPerUnit) : "";
}

std::string lineOf(const Group& group, const Case& one) {
    const bool isMeasured = !one.samples.empty();
    const auto figure = [&](double clocks) { return isMeasured ? exactText(clocks) : ""; };
    return csvLine({group.label, one.function, one.types, one.family, kindText(one.kind),
                    common::parametersText(one.parameters), one.file, textOf(one.length),
                    textOf(one.ratio), std::to_string(one.samples.size()), figure(one.smallest),
                    figure(one.median), figure(one.largest), textOf(one.spread), one.unit,
                    perByteText(one), one.result, one.comment});
}

} // namespace

std::string csvText(const Report& report) {
    std::string text =
        csvLine({"group", "function", "types", "family", "kind", "parameters", "file", "length",
                 "ratio", "runs", "smallest_clocks", "median_clocks", "largest_clocks", "spread",
                 "unit", "median_clocks_per_byte", "result", "comment"});
    for (const Group& group : report.groups) {
        for (const Case& one : group.cases) {
            text += lineOf(group, one);
        }
    }
    return text;
}

} // namespace report

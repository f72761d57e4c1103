#include "pstestformat.h"

#include <cmath>

namespace {
int decimalsOf(double clocks) {
    int decimals = 0;
    for (double limit = 100; decimals < 6 && clocks < limit; limit /= 10) {
        decimals++;
    }
    return decimals;
}
} // namespace

psString psFormatClocks(double clocks) {
    if (!(clocks > 0) || std::isinf(clocks)) { // a call on no elements has no clocks per element
        return "";
    }
    if (clocks < 0.0001 || clocks > 10000000) {
        return psFormat("%.3e", clocks);
    }
    return psFormat("%.*f", decimalsOf(clocks), clocks);
}

psString sFormat(const psString& text, int width) {
    const int missing = (width < 0 ? -width : width) - text.length();
    if (missing <= 0) {
        return text;
    }
    psString blanks;
    blanks.resize(missing);
    return width < 0 ? text + blanks : blanks + text;
}

psString sFormat(double number, int width) {
    return sFormat(psText(number), width);
}

psString psSpreadText(const psMeasurement& record) {
    const bool has = record.isMeasured() && record.times.batches > 1;
    return has ? psFormat("%.1f", 100 * record.times.spread) : psString();
}

psString psDisturbanceText(const psMeasurement& record) {
    if (!record.isSpread()) {
        return {};
    }
    psString text = "spread=" + psFormat("%.1f%%", 100 * record.times.spread);
    if (record.times.switches > 0) {
        text << ", switched out " << record.times.switches
             << (record.times.switches == 1 ? " time" : " times");
    }
    return text + "\n";
}

void psRunFigures::count(const psMeasurement& record) {
    measured += record.isMeasured() ? 1 : 0;
    spread += record.isSpread() ? 1 : 0;
    switchedOut += record.isSwitchedOut() ? 1 : 0;
}

psString psDisturbanceSummary(const psRunFigures& of) {
    if (of.spread == 0 && of.switchedOut == 0) {
        return {};
    }
    return psFormat(
        " Note     : %d of %d measurements have a spread above 5%%, in %d another process ran.\n"
        "            To measure again: with nothing else running, on one processor\n"
        "            (taskset -c 1 ntkperf ...)\n",
        of.spread, of.measured, of.switchedOut);
}

psString psTimeInCallsText(double secondsInCalls, double seconds) {
    if (!(secondsInCalls > 0 && seconds > 0)) {
        return {};
    }
    return psFormat(" Measured : %.1f%% of the time was spent inside measured calls,\n"
                    "            %.3f of %.3f seconds\n",
                    100 * secondsInCalls / seconds, secondsInCalls, seconds);
}

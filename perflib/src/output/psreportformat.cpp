#include "psreportformat.h"

static psString lineOf(char c) {
    psString line;
    line.resize(79, c);
    return line + "\n";
}

psString psReportFormat::firstLine() {
    return lineOf('=');
}

psString psReportFormat::lastLine() {
    return lineOf('=');
}

psString psReportFormat::sepLine() {
    return lineOf('-');
}

psString psReportFormat::getPieceItem(const psString& label, const psString& value) const {
    return psFormat(" %-9s: %s%s", label.c_str(), value.c_str(), m_endLine ? "\n" : "");
}

psString psReportFormat::getItems(const psDataList& items) const {
    psString lines;
    for (const psDataItem& item : items) {
        lines += getPieceItem(item.name, item.value);
    }
    return lines;
}

psString psReportFormat::getTimeStr(double seconds) {
    constexpr double tooLarge = 100 * 3600; // the hours have two digits
    if (seconds >= tooLarge) {
        return "UNKNOWN (Very large value)";
    }
    const int whole = seconds > 0 ? static_cast<int>(seconds) : 0; // the clock was set back
    return psFormat("%02d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
}

psString psReportFormat::getDateStr(time_t t) {
    const char* const text = ctime(&t); // null for years of five digits
    psStringList lines;
    psString(text).parse(lines, "\n");
    return lines.empty() ? psString() : lines.front();
}

static psString frequencyText(int freqMHz) {
    return freqMHz < 1000 ? psFormat("%d MHz", freqMHz) : psFormat("%.2f GHz", freqMHz / 1000.0);
}

psString psProcessorText(const psString& brand, int processors, int freqMHz, int cacheBytes) {
    psString text = brand.empty() ? "Unknown CPU" : brand;
    if (processors > 0) {
        text << ", x" << processors;
    }
    if (freqMHz > 0) {
        text << ", " << frequencyText(freqMHz);
    }
    if (cacheBytes >= 1024) {
        text << ", Max cache size " << cacheBytes / 1024 << " K";
    }
    return text;
}

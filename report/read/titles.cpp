#include "titles.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "cells.h"

namespace report {

namespace {

// "Intel(R) Xeon(R) Processor  x2  2.60 GHz": parts lie two blanks apart.
std::vector<std::string> partsOf(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find("  ", at), text.size());
        if (const std::string_view part = trimmed(text.substr(at, end - at)); !part.empty()) {
            parts.emplace_back(part);
        }
        at = end + 2;
    }
    return parts;
}

// Its name, then what was known as the run began.
void addProcessor(std::string_view text, Facts& facts) {
    for (const std::string& part : partsOf(text)) {
        const bool isCount = part.starts_with('x') && numberOf(part.substr(1));
        const std::size_t unit =
            part.find(" GHz") != std::string::npos ? part.find(" GHz") : part.find(" MHz");
        const auto frequency = numberOf(part.substr(0, unit));
        if (facts.processor.empty()) {
            facts.processor = part;
        } else if (isCount) {
            facts.processors = static_cast<int>(*numberOf(part.substr(1)));
        } else if (unit != std::string::npos && frequency) {
            facts.ticksMHz = *frequency * (part.find(" GHz") != std::string::npos ? 1000 : 1);
        }
    }
}

// "ntkDC  12.0.0 (open build)  Nov 22 2026; -T: MMX SSE": libraries, and the features that were
// left enabled.
void addLibraries(std::string_view text, Facts& facts) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(';', at), text.size());
        const std::string_view item = trimmed(text.substr(at, end - at));
        const std::vector<std::string> parts = partsOf(item);
        if (item.starts_with("-T")) {
            facts.keys.emplace_back(item);
        } else if (!parts.empty() && item != "none") {
            facts.libraries.push_back(
                {parts[0], parts.size() > 1 ? parts[1] : "", parts.size() > 2 ? parts[2] : "", {}});
        }
        at = end + 1;
    }
}

} // namespace

bool isTitle(std::string_view firstCell) {
    return firstCell == "Processor" || firstCell == "OS" || firstCell == "Computer" ||
           firstCell == "Library" || firstCell == "Start";
}

void addTitle(std::string_view name, std::string_view text, Facts& facts) {
    if (name == "Processor") {
        addProcessor(text, facts);
    } else if (name == "OS") {
        facts.system = trimmed(text);
    } else if (name == "Computer") {
        facts.computer = trimmed(text);
    } else if (name == "Library") {
        addLibraries(text, facts);
    } else {
        facts.started = trimmed(text);
    }
}

} // namespace report

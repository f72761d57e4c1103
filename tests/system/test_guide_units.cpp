// The guide's table of what a figure counts, held to the registered tests and to the overview,
// which counts in the same units.
#include <algorithm>
#include <fstream>

#include "../registered_tests.h"
#include "session.h"

namespace {

// Of the rows "| `<function>` ... | <unit> | ..." of the section: the unit of each function.
std::multimap<std::string, std::string> unitsInGuide() {
    std::multimap<std::string, std::string> units;
    const std::string guide = readFile(NTK_GUIDE_FILE);
    const std::size_t begin = guide.find("\n## What a figure counts\n");
    const std::string section = guide.substr(begin, guide.find("\n## ", begin + 1) - begin);
    std::string unit;
    for (const std::string& line : linesOf(section)) {
        const std::size_t end = line.find(" | ");
        if (!line.starts_with("| `ntks") || end == std::string::npos) {
            continue;
        }
        const std::string cell = line.substr(end + 3, line.find(" | ", end + 3) - end - 3);
        unit = cell.starts_with("as above") ? unit : cell;
        for (std::size_t at = 0; (at = line.find('`', at)) < end;) {
            const std::size_t close = line.find('`', ++at);
            units.emplace(line.substr(at, close - at), unit);
            at = close + 1;
        }
    }
    return units;
}

// As the overview names the unit: what it does not name is counted in bytes of data.
std::string unitInOverview(const std::string& function) {
    const std::string script = readFile(NTK_OVERVIEW_FILE);
    const std::size_t at = script.find("unit[\"" + function + "\"]");
    if (at == std::string::npos) {
        return "byte";
    }
    const std::size_t begin = script.find("= \"", at) + 3;
    return script.substr(begin, script.find('"', begin) - begin);
}

TEST(GuideUnits, EveryFunctionHasOneRowWithTheUnitOfTheOverview) {
    const auto units = unitsInGuide();
    Texts registered, told;
    for (const RegisteredTest& test : registeredTests()) {
        registered.push_back(test.function);
    }
    for (const auto& [function, unit] : units) {
        told.push_back(function);
        const std::string other = unitInOverview(function);
        const bool compressed = unit.find("**compressed** byte") != std::string::npos;
        EXPECT_EQ(compressed, other == "compressed byte") << function << ": " << unit;
        EXPECT_EQ(unit.starts_with("a value"), other == "value") << function << ": " << unit;
    }
    std::sort(registered.begin(), registered.end());
    EXPECT_EQ(told, registered);
}

} // namespace

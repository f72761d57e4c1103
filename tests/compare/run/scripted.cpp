#include "scripted.h"

#include <algorithm>

#include "../../texts.h"
#include "progress.h"

namespace compare {

Scripted::Scripted(const std::string& base, const std::string& changed) {
    const std::string log = m_folder.path("log");
    plan.worker = FAKE_WORKER;
    plan.ownLibraries = m_folder.path();
    plan.directories = {"own", m_folder.path()};
    plan.keys = {{"base", writeFile(m_folder.path("base"), base), log},
                 {"new", writeFile(m_folder.path("new"), changed), log}};
    plan.settings.secondsPerCase = 1e-9;
    // Ample for an answer, unless a test waits for one that never comes.
    plan.settings.patienceSeconds = 20;
}

Comparison Scripted::run() {
    return compare::run(
        plan, [this](const Progress& told) { progress.push_back(told); },
        [this] {
            return (plan.wantsEnd && plan.wantsEnd()) ||
                   (turnsUntilInterrupt >= 0 && turnsUntilInterrupt-- == 0);
        });
}

std::vector<std::string> Scripted::log() const {
    return linesOf(readFile(m_folder.path("log")));
}

int Scripted::countInLog(const std::string& line) const {
    const std::vector<std::string> lines = log();
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

std::string scriptOfTwo(const std::string& linesOfFirst) {
    return "case ntksA Length=16\n" + linesOfFirst + "\ncase ntksB Length=32\n";
}

std::vector<std::string> namesOf(const std::vector<Case>& cases) {
    std::vector<std::string> names;
    for (const Case& named : cases) {
        names.push_back(caseName(named));
    }
    return names;
}

} // namespace compare

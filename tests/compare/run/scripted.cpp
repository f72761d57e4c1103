#include "scripted.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "progress.h"

namespace compare {

Scripted::Scripted(const std::string& base, const std::string& changed) {
    std::string name = std::filesystem::temp_directory_path() / "compare_run_XXXXXX";
    if (!mkdtemp(name.data())) {
        throw std::runtime_error("no folder for a script");
    }
    m_folder = name;
    std::ofstream(m_folder + "/base") << base;
    std::ofstream(m_folder + "/new") << changed;
    const std::string log = m_folder + "/log";
    plan.worker = FAKE_WORKER;
    plan.ownLibraries = m_folder;
    plan.directories = {"own", m_folder};
    plan.keys = {{"base", m_folder + "/base", log}, {"new", m_folder + "/new", log}};
    plan.settings.secondsPerCase = 1e-9;
    // Ample for an answer, unless a test waits for one that never comes.
    plan.settings.patienceSeconds = 20;
}

Scripted::~Scripted() {
    std::filesystem::remove_all(m_folder);
}

Comparison Scripted::run() {
    return compare::run(
        plan, [this](const Progress& told) { progress.push_back(told); },
        [this] { return turnsUntilInterrupt >= 0 && turnsUntilInterrupt-- == 0; });
}

std::vector<std::string> Scripted::log() const {
    std::vector<std::string> lines;
    std::ifstream file(m_folder + "/log");
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
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

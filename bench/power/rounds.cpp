#include "rounds.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <memory>
#include <sstream>

#include "programs.h"

namespace fs = std::filesystem;

namespace {

constexpr double longLevel = 0.005; // that needs more than a second
constexpr int longSeconds = 10;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string numberText(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

Rounds::Rounds(const PowerOptions& options, const fs::path& folder, std::ostream& results)
    : m_options(options), m_programs(fs::read_symlink("/proc/self/exe").parent_path()),
      m_folder(folder), m_base(folder / "base"), m_changed(folder / "slow"), m_results(results) {
    const fs::path library = m_programs.parent_path() / "lib/slower/libntkdc.so.12";
    for (const fs::path& side : {m_base, m_changed}) {
        fs::create_directory(side);
        fs::copy_file(library, side / library.filename());
    }
    fs::current_path(options.corpus); // where the tests look for their files
}

// One line, on a terminal alone.
void Rounds::say(const std::string& what) const {
    if (isatty(STDERR_FILENO)) {
        std::fprintf(stderr, "\r\033[K%s", what.c_str());
    }
}

// One value of each parameter.
std::vector<std::string> Rounds::keys(const std::vector<std::string>& functions, int length) const {
    std::vector<std::string> keys = {"-dCodeFile=book1", "-dCodeLength=" + std::to_string(length),
                                     "-dmethod=ST", "-dcomprLevel=6", "-drate=8"};
    for (const std::string& function : functions) {
        keys.push_back("-f=" + function);
    }
    return keys;
}

std::string Rounds::runPlain(const fs::path& side, const std::vector<std::string>& options,
                             int length) const {
    const fs::path out = m_folder / "plain";
    Program program{{m_programs / "bench_plain", "--out", out.string()}, side, m_options.cpu};
    auto& words = program.words;
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"--", "-B"});
    const std::vector<std::string> behind = keys(m_options.functions, length);
    words.insert(words.end(), behind.begin(), behind.end());
    runProgram(program, 0);
    return contentOf(out);
}

std::string Rounds::runCompare(const std::vector<std::string>& options,
                               const std::vector<std::string>& keysBehind) const {
    const fs::path out = m_folder / "compared.json";
    Program program{{m_programs / "ntkcompare", "--quiet", "--json", out.string(), "--cpu",
                     std::to_string(m_options.cpu)}};
    auto& words = program.words;
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {m_base.string(), m_changed.string(), "--"});
    words.insert(words.end(), keysBehind.begin(), keysBehind.end());
    runProgram(program, 1); // 1: something is slower
    return contentOf(out);
}

void Rounds::calibrate() {
    std::string levels;
    for (const double level : m_options.levels) {
        if (level > 0) {
            levels.append(levels.empty() ? "" : ",").append(numberText(level));
        }
    }
    KnownSubjects all;
    for (const int length : m_options.lengths) {
        say("calls and chains are measured, bytes: " + std::to_string(length));
        std::vector<std::string> options = {"--calibrate", "--seconds",
                                            numberText(m_options.calibrationSeconds)};
        if (!levels.empty()) {
            options.insert(options.end(), {"--levels", levels});
        }
        m_known[length] = knownOf(runPlain(m_base, options, length));
        for (const auto& [subject, known] : m_known[length]) {
            all[subject + " " + std::to_string(length)] = known;
        }
    }
    const std::string remark = remarkOnControl(all);
    if (!remark.empty()) {
        m_results << lineOfRemark(remark) << std::endl;
    }
}

// Both files hold as many bytes, and the folders' names do: what a process has read and allocated
// before shifts its later blocks, and that alone can make a function faster or slower.
void Rounds::setLevel(double level, int length) const {
    std::ofstream base(m_base / "slower.txt"), changed(m_changed / "slower.txt");
    const auto write = [](std::ostream& out, const std::string& function, long links) {
        out << function << ' ' << std::setfill('0') << std::setw(10) << links << '\n';
    };
    for (const auto& [subject, known] : m_known.at(length)) {
        const Known::Level* const found = known.find(level);
        write(base, known.function, 0);
        write(changed, known.function, found ? found->links : 0);
    }
}

// A level whose cases get ten times the time gets half of the rounds.
int Rounds::roundsOf(double level, int nullRounds) const {
    return level == 0           ? nullRounds
           : level == longLevel ? (m_options.rounds + 1) / 2
                                : m_options.rounds;
}

std::vector<Rounds::Round> Rounds::plan() const {
    const auto casesOfRound =
        static_cast<double>(m_options.functions.size() * m_options.lengths.size());
    const int nullRounds = static_cast<int>(std::ceil(m_options.nullCases / casesOfRound));
    std::vector<Round> rounds;
    for (int i = 0; i < std::max(nullRounds, m_options.rounds); ++i) {
        for (const double level : m_options.levels) {
            for (const bool hasNeighbour : {false, true}) {
                const bool isWanted = hasNeighbour ? m_options.isDisturbed : m_options.isQuiet;
                if (isWanted && i < roundsOf(level, nullRounds)) {
                    rounds.push_back({level, hasNeighbour, i < m_options.peerRounds});
                }
            }
        }
    }
    return rounds;
}

void Rounds::compareAll() {
    const std::vector<Round> rounds = plan();
    const std::size_t all = rounds.size() * m_options.lengths.size();
    std::size_t done = 0;
    for (const Round& round : rounds) {
        for (const int length : m_options.lengths) {
            say(std::to_string(++done) + " of " + std::to_string(all) + ": " +
                numberText(100 * round.level) + "% added, " + std::to_string(length) + " bytes" +
                (round.hasNeighbour ? ", with the neighbour" : ""));
            setLevel(round.level, length);
            const auto neighbour =
                round.hasNeighbour ? std::make_unique<Neighbour>(m_options.cpu) : nullptr;
            compare(round, length);
            if (round.hasPeers) {
                compareElsewhere(round, length);
            }
        }
    }
    say("");
}

void Rounds::compare(const Round& round, int length) {
    std::vector<std::string> options;
    if (round.level == longLevel) {
        options = {"--time", std::to_string(longSeconds)};
    }
    const std::string json = runCompare(options, keys(m_options.functions, length));
    for (const Reading& reading :
         readingsOfCompare(json, m_known.at(length), {round.level, round.hasNeighbour})) {
        m_results << lineOf(reading) << std::endl;
    }
}

void Rounds::compareElsewhere(const Round& round, int length) {
    // Both sides of each means get half of the time.
    const std::vector<std::string> options = {"--seconds", numberText(m_options.peerSeconds / 2)};
    const std::string base = runPlain(m_base, options, length);
    const std::string changed = runPlain(m_changed, options, length);
    for (const Reading& reading :
         readingsOfPlain(base, changed, m_known.at(length), {round.level, round.hasNeighbour})) {
        m_results << lineOf(reading) << std::endl;
    }
}

void Rounds::measureTurnShares() {
    const std::vector<std::string> two(m_options.functions.begin(),
                                       m_options.functions.begin() +
                                           std::min<long>(2, std::ssize(m_options.functions)));
    const int length = m_options.lengths.back();
    setLevel(0, length);
    for (const bool hasNeighbour : {false, true}) {
        if (hasNeighbour ? m_options.isDisturbed : m_options.isQuiet) {
            say(std::string("the share of turns is measured") +
                (hasNeighbour ? ", with the neighbour" : ""));
            const auto neighbour =
                hasNeighbour ? std::make_unique<Neighbour>(m_options.cpu) : nullptr;
            // So precise that no case ends before its time.
            const std::string json =
                runCompare({"--time", "5", "--precision", "0.001%"}, keys(two, length));
            m_results << lineOf(turnShareOf(json, hasNeighbour)) << std::endl;
        }
    }
    say("");
}

// The rounds of comparisons: folders, programs, and the results that they leave.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <map>

#include "options.h"
#include "records.h"

class Rounds {
public:
    // Results are added to the stream line by line.
    Rounds(const PowerOptions& options, const std::filesystem::path& folder, std::ostream& results);

    void calibrate();
    void compareAll();
    // Of a run of two long cases, quiet and disturbed.
    void measureTurnShares();

private:
    struct Round {
        double level = 0;
        bool hasNeighbour = false;
        bool hasPeers = false; // is also compared by other means
    };
    std::vector<Round> plan() const;
    int roundsOf(double level, int nullRounds) const;
    void compare(const Round& round, int length);
    void compareElsewhere(const Round& round, int length);
    void setLevel(double level, int length) const; // in the folder that is slowed
    std::vector<std::string> keys(const std::vector<std::string>& functions, int length) const;
    std::string runCompare(const std::vector<std::string>& options,
                           const std::vector<std::string>& keysBehind) const; // gives the JSON
    std::string runPlain(const std::filesystem::path& side, const std::vector<std::string>& options,
                         int length) const;
    void say(const std::string& what) const;

    const PowerOptions& m_options;
    std::filesystem::path m_programs, m_folder, m_base, m_changed;
    std::ostream& m_results;
    std::map<int, KnownSubjects> m_known; // by length
};

#pragma once

#include <string>
#include <vector>

namespace guard {

// How a process ended, or was ended.
struct Ending {
    int status = 0;          // of its exit
    int signal = 0;          // that ended it; 0: none
    int silentSeconds = 0;   // after so many without a word it was ended; 0: it was not
    std::string lastError{}; // the last line on its standard error, since its last word

    std::string word() const;    // for a table: "SIGABRT", "exit 3", "no answer"
    std::string message() const; // the same for a log, as the harness writes exceptions
    std::string inWords() const; // for a person
};

// What the processes of a run have said: where the run is, and what a successor has to know. No
// clock, no process.
class Progress {
public:
    void newProcess();
    // All that the present process has said until now.
    void read(const std::string& text);
    // The test that the present process was in is lost.
    void ended(const Ending& ending);

    // Of the present process.
    bool isOfHarness() const { return m_isOfHarness; }
    bool hasEnded() const { return m_hasEnded; }       // all is written
    bool isWaiting() const { return m_isWaiting; }     // for a person
    bool hasAdvanced() const { return m_hasAdvanced; } // it has begun a test or ended one
    int signalsHeard() const { return m_signalsHeard; }

    // Of the run.
    bool hasBegun() const { return m_hasBegun; } // any test
    std::string place() const; // "ntksCRC32_8u in initData, CodeLength=16384"; empty: in no test
    std::string forSuccessor() const; // the file for a process that goes on

private:
    struct Said {
        std::vector<std::string> kept{};
        std::string test{}, at{}, row{}, lost{}; // lines, empty: not said
    };
    void take(const std::string& line);
    void takeKept(const std::string& line);
    void beginTest(const std::string& line);

    bool m_isOfHarness = false;
    bool m_hasEnded = false;
    bool m_isWaiting = false;
    bool m_hasAdvanced = false;
    bool m_hasBegun = false;
    int m_signalsHeard = 0;
    Said m_before{}; // by the earlier processes
    Said m_now{};    // by all
};

} // namespace guard

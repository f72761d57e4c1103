#pragma once

#include <optional>
#include <string>

#include "message.h"
#include "process.h"
#include "turnsize.h"

// One side's worker: orders in, answers out. Where it does not answer as it should, its end or
// what it said instead is thrown as WorkerLost, and nothing more can be had from it.
namespace compare {

struct WorkerLost {
    Failure failure;
};
// Thrown where it does not answer within the seconds of a hurry: that is no failure of its.
struct WorkerLeft {};

class Worker {
public:
    Worker(Side side, const Command& command, double patienceSeconds, const Hurry& hurry);

    Hello greet(); // the first thing, at most once

    // What it announces next, or nothing when no case is left.
    std::optional<Announced> announcement();
    void skip();

    // Behind the last announcement: what it has to say of its keys.
    const std::vector<std::string>& remarks() const { return m_remarks; }

    // After an announcement. Nothing: it is prepared; else it does not measure this, for a reason
    // if it or its test gave one, and the next announcement follows.
    std::optional<PassedOver> prepare();
    Taken takeTurn(const TurnSize& size);
    Outcome release(); // the next announcement follows

    // It ends by itself, as long as it is given time for that: see waitForEnd.
    void quit();
    void waitForEnd();

    // Skips what it announces until the case of this name at this place (from 0), where it stays.
    void goTo(int place, const std::string& function);

    std::string lastWords() const { return m_process.lastWords(); }

private:
    [[noreturn]] void giveUp(const std::string& what);
    template <class... Expected> Answer expect();
    void order(const Order& order, const std::string& nextStage);
    Answer answer();
    [[noreturn]] void tellEnd();

    Side m_side;
    Process m_process;
    double m_patienceSeconds;
    Hurry m_hurry;
    std::string m_stage = "at the start"; // for messages
    bool m_hasGreeted = false;
    int m_announcedCases = 0;
    std::vector<std::string> m_remarks;
};

} // namespace compare

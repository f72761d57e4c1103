#include "worker.h"

#include <cstdio>

namespace compare {

namespace {

// For a process that closed its pipe: it is ending, or it never will.
constexpr double secondsToEnd = 1;
constexpr size_t shownGarbage = 60;

constexpr const char* onTheWay = "on the way to a case"; // a stage

std::string inSeconds(double seconds) {
    char text[32];
    snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

// A test's log tells a fault as "-- Can't open file bib to read", among other lines: the last such
// one, without its dashes; empty when there is none.
std::string faultIn(const std::string& words) {
    const std::string sign = "\n-- ";
    const std::string lines = "\n" + words;
    const size_t start = lines.rfind(sign);
    if (start == std::string::npos) {
        return "";
    }
    const std::string fault = lines.substr(start + sign.size());
    return fault.substr(0, fault.find('\n'));
}

} // namespace

Worker::Worker(Side side, const Command& command, double patience, const Hurry& hurry)
    : m_side(side), m_process(command), m_patienceSeconds(patience), m_hurry(hurry) {}

void Worker::giveUp(const std::string& what) {
    throw WorkerLost{{m_side, what, m_process.lastWords()}};
}

void Worker::tellEnd() {
    const std::string end = m_process.end(secondsToEnd);
    giveUp((end.empty() ? "closed its answers" : end) + " " + m_stage);
}

void Worker::order(const Order& order, const std::string& nextStage) {
    if (m_process.hasMore()) {
        giveUp("answered out of turn " + m_stage);
    }
    m_stage = nextStage;
    if (!m_process.send(toLine(order))) {
        tellEnd();
    }
}

Answer Worker::answer() {
    const Received received = m_process.receive(m_patienceSeconds, m_hurry);
    switch (received.kind) {
    case Received::closed: tellEnd();
    case Received::late: giveUp("no answer for " + inSeconds(m_patienceSeconds) + " " + m_stage);
    case Received::hurried: throw WorkerLeft{};
    case Received::tooLong:
    case Received::line: break;
    }
    if (received.kind == Received::line) {
        if (const std::optional<Answer> parsed = parseAnswer(received.text)) {
            return *parsed;
        }
    }
    giveUp("answered garbage " + m_stage + ": '" + printable(received.text, shownGarbage) + "'");
}

template <class... Expected> Answer Worker::expect() {
    Answer given = answer();
    if (!(std::holds_alternative<Expected>(given) || ...)) {
        giveUp("answered out of turn " + m_stage);
    }
    return given;
}

Hello Worker::greet() {
    m_hasGreeted = true;
    return std::get<Hello>(expect<Hello>());
}

std::optional<Announced> Worker::announcement() {
    m_stage = onTheWay;
    const Answer given = expect<Announced, End>();
    if (const auto* end = std::get_if<End>(&given)) {
        m_remarks = end->remarks;
        return std::nullopt;
    }
    ++m_announcedCases;
    return std::get<Announced>(given);
}

void Worker::skip() {
    order({Word::skip}, onTheWay);
}

void Worker::goTo(int place, const std::string& function) {
    if (!m_hasGreeted) {
        greet();
    }
    for (;;) {
        const std::optional<Announced> announced = announcement();
        const bool isThere = m_announcedCases == place + 1;
        if (!announced || (isThere && announced->function != function)) {
            giveUp("announced other cases than before");
        }
        if (isThere) {
            return;
        }
        skip();
    }
}

std::optional<PassedOver> Worker::prepare() {
    m_process.forgetOutput(); // last words of another case explain nothing
    order({Word::prepare}, "in preparation");
    const Answer given = expect<Ready, PassedOver>();
    if (const auto* passedOver = std::get_if<PassedOver>(&given)) {
        return PassedOver{passedOver->why.empty() ? faultIn(m_process.lastWords())
                                                  : passedOver->why};
    }
    return std::nullopt;
}

Taken Worker::takeTurn(const TurnSize& size) {
    order({Word::turn, size.callsPerSpan, size.spans}, "in a turn");
    return std::get<Taken>(expect<Taken>());
}

Outcome Worker::release() {
    order({Word::release}, "after its turns");
    const Outcome outcome = std::get<Done>(expect<Done>()).outcome;
    return outcome;
}

void Worker::quit() {
    m_process.send(toLine(Order{Word::quit}));
}

void Worker::waitForEnd() {
    m_process.end(secondsToEnd);
}

} // namespace compare

#include "turnworker.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "disturbances.h"
#include "psistream.h"
#include "psremarks.h"
#include "pstest.h"
#include "symbols.h"

namespace compare {

namespace {

NamedValues toValues(const psNamedValues& from) {
    NamedValues values;
    for (const psNamedValue& named : from) {
        Value value;
        if (const auto* const text = std::get_if<psString>(&named.value)) {
            value = std::string(text->c_str());
        } else if (const auto* const number = std::get_if<double>(&named.value)) {
            value = *number;
        } else {
            value = std::get<long long>(named.value);
        }
        values.push_back({named.name.c_str(), value});
    }
    return values;
}

// A negative status is an error and worse than any warning.
int worseStatus(int a, int b) {
    if (a < 0 || b < 0) {
        return a < b ? a : b;
    }
    return a > b ? a : b;
}

} // namespace

bool TurnWorker::wants(const psString& function, const psNamedValues& parameters) {
    refuseOpenCase();
    const bool isSameTest = m_current.function == function.c_str();
    if (!isSameTest && !m_current.function.empty()) {
        m_current.test++;
    }
    m_current.combination = isSameTest ? m_current.combination + 1 : 0;
    m_current.function = function.c_str();
    m_current.parameters = toValues(parameters);
    m_channel.say(m_current);
    m_isOpen = m_channel.hear().word == Word::prepare;
    m_isPrepared = false;
    m_status = 0;
    m_outcome = {};
    return m_isOpen;
}

// An exception of a test goes by here: the test gives up its other combinations, which another
// worker has to take over.
void TurnWorker::refuseOpenCase() const {
    if (m_isOpen) {
        fflush(nullptr);
        fprintf(stderr, "ntkturns: the test was given up\n");
        _exit(EXIT_FAILURE);
    }
}

psResult TurnWorker::atPrepared(const psTurns& turns) {
    m_isPrepared = true;
    g_initClocks.keep();
    m_channel.say(Ready{});
    for (Order order = m_channel.hear(); order.word == Word::turn; order = m_channel.hear()) {
        m_channel.say(turn(turns, order));
    }
    return PS_OK;
}

Taken TurnWorker::turn(const psTurns& turns, const Order& order) {
    Taken taken;
    taken.failed = missingFunction(m_current.function);
    if (!taken.failed.empty()) {
        return taken;
    }
    const Disturbances before = Disturbances::now();
    taken.status = turns.callOnce();
    m_status = worseStatus(m_status, taken.status);
    if (taken.status < 0) {
        return taken;
    }
    const psTurn taking = turns.take(order.callsPerSpan, order.spans);
    before.countSince(taken.turn);
    taken.turn.clocks = taking.clocksPerCall;
    taken.turn.calls = taking.calls;
    if (psIsFail(taking.result)) {
        taken.failed = "a timed call failed";
    }
    return taken;
}

void TurnWorker::write(const psMeasurement& record) {
    m_outcome.status = m_status;
    m_outcome.unit = record.unit.c_str();
    m_outcome.unitsPerCall = record.unitsPerCall;
    m_outcome.values = toValues(record.values);
    if (psIsFail(record.result) && m_status >= 0) { // impossible lengths: no status tells
        m_outcome.values.push_back({"Result", psResultShortName(record.result)});
    }
}

void TurnWorker::released() {
    m_isOpen = false;
    fflush(nullptr);                 // why it was passed over stands in what the test has written
    psTest::m_currentResult = PS_OK; // a failed combination must not end the test's others
    if (m_isPrepared) {
        m_channel.say(Done{m_outcome});
    } else {
        m_channel.say(PassedOver{});
    }
}

void TurnWorker::finish() {
    refuseOpenCase();
    End message;
    for (const psString& remark : g_remarks.shown()) {
        message.remarks.emplace_back(remark.c_str());
    }
    for (const psString& name : g_istrm.unusedPresets()) { // the log tells of them at its end
        message.remarks.emplace_back(("-d" + name + ": no test asked for it").c_str());
    }
    m_channel.say(message);
}

} // namespace compare

#pragma once

#include "channel.h"
#include "psmeasurement.h"
#include "psrecordwriter.h"
#include "psturns.h"

// The harness taking orders: announces its combinations, prepares those that are asked for and
// takes turns at them.
namespace compare {

class TurnWorker : public psTurnTaker, public psRecordWriter {
public:
    explicit TurnWorker(Channel& channel) : m_channel(channel) {}

    bool wants(const psString& function, const psNamedValues& parameters) override;
    psResult atPrepared(const psTurns& turns) override;
    void write(const psMeasurement& record) override; // between atPrepared() and released()
    void released() override;

    // After the session: says that there are no more, or that a test was given up.
    void finish();

private:
    void refuseOpenCase() const;
    Taken turn(const psTurns& turns, const Order& order);

    Channel& m_channel;
    Announced m_current;       // announced last
    bool m_isOpen = false;     // wanted, and not yet released
    bool m_isPrepared = false; // got as far as to take turns
    int m_status = 0;          // the worst of the current combination
    Outcome m_outcome;
};

} // namespace compare

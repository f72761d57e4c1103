#pragma once

#include <signal.h>

// During its life the signals to this thread wait, so that none comes between a look at what they
// have left and the call that sleeps until the next one (ppoll, sigsuspend), which is given the
// mask from before.
class psSignalsWait {
public:
    psSignalsWait() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~psSignalsWait() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    psSignalsWait(const psSignalsWait&) = delete;
    psSignalsWait& operator=(const psSignalsWait&) = delete;

    const sigset_t& maskBefore() const { return m_before; }

private:
    sigset_t m_before;
};

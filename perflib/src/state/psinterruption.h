#pragma once

// The wish of a user or of the system that the run ends: SIGINT, SIGTERM or SIGHUP. It ends after
// the current run of calls, with everything written that is written at any end. A second signal
// ends the process at once.
class psInterruption {
public:
    // From now on. What the process was told to ignore at its start (nohup) stays ignored.
    static void watch();
    // Called by the handler, which may do little, when the first signal is noted.
    static void setListener(void (*listener)());
    // Whether the run is to end: asked before each test. True is also noted as wasFollowed().
    static bool isWanted();
    // Throws a psException when the run is to end: asked where a test can be left.
    static void check();
    // Whether something was left out for it, and the name of the signal.
    static bool wasFollowed();
    static const char* signalName();
};

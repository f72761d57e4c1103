#pragma once

#include "psalloc.h"
#include "psostream.h"
#include "pssignal.h"
#include "pstrace.h"

// One step of a test's life: bracketed by trace lines under its label, and guarded against faults
// of its own, so that a jump passes over nothing but the step's body. Left by an exception, the
// bracket stays open: the label tells where it happened.
template <class Body> void psStep(const char* label, Body&& body) {
    g_trace.traceIn(label);
    tsSignal::guarded(body);
    g_trace.traceOut(label);
}

// The state of the process-wide streams and blocks when a run began, for the way back after an
// exception or a fault.
class psRunCheckpoint {
public:
    psRunCheckpoint();
    // Output and message level, trace depth, priority.
    void restoreStreams() const;
    // Frees the blocks and closes the files that have come since.
    void releaseBlocks() const;

private:
    int m_outLevel;
    int m_levelDepth;
    int m_traceDepth;
    unsigned m_openFiles;
    psList<void*> m_blocks;
};

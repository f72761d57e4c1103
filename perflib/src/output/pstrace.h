#pragma once

#include "psstring.h"

// Brackets of the steps of a run. The label of the innermost open bracket shows the error path
// where an exception came from; the lines themselves appear at trace level only.
class psTrace {
public:
    void traceIn(const psString& label);
    void traceOut(const psString& label);
    // The innermost open bracket, empty when there is none.
    const psString& label() const;
    int depth() const { return m_labels.count(); }
    // Closes brackets that a jump or an exception left open, down to depth (no lines written).
    void unwind(int depth);

private:
    void line(const char* what, const psString& label, int depth) const;
    psStringList m_labels;
    psString m_none; // stays empty
};

extern psTrace g_trace;

// A bracket for a scope. Left by an exception it closes nothing: the catcher still needs the
// label to report where it happened, and unwinds.
class psTraceScope {
public:
    explicit psTraceScope(const char* label);
    ~psTraceScope();
    psTraceScope(const psTraceScope&) = delete;
    psTraceScope& operator=(const psTraceScope&) = delete;

private:
    const char* m_label;
    int m_exceptions;
};

#include "pstrace.h"

#include <exception>

#include "psinit.h"
#include "psostream.h"

PS_INIT_SECOND psTrace g_trace;

void psTrace::traceIn(const psString& label) {
    line(" trace into   ", label, depth());
    m_labels.append(label);
}

void psTrace::traceOut(const psString& label) {
    unwind(depth() - 1);
    line(" trace out of ", label, depth());
}

const psString& psTrace::label() const {
    return m_labels.empty() ? m_none : m_labels.back();
}

void psTrace::unwind(int depth) {
    while (!m_labels.empty() && m_labels.count() > depth) {
        m_labels.removeBack();
    }
}

// Flushed: the last trace line shows which measured function crashed the run.
void psTrace::line(const char* what, const psString& label, int depth) const {
    if (!g_ostrm.accepts(PS_TRACE)) {
        return;
    }
    psString text;
    text.resize(depth, '*');
    g_ostrm << PS_TRACE << text + "*****" + what + label + "\n" << PS_END_FLUSH;
}

psTraceScope::psTraceScope(const char* label)
    : m_label(label), m_exceptions(std::uncaught_exceptions()) {
    g_trace.traceIn(label);
}

psTraceScope::~psTraceScope() {
    if (std::uncaught_exceptions() == m_exceptions) {
        g_trace.traceOut(m_label);
    }
}

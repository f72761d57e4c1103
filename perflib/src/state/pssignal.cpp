#include "pssignal.h"

#include <pthread.h>
#include <string.h>

#include <ntkcore.h>

#include "psabort.h"
#include "pslastwords.h"
#include "pssignalactions.h"

namespace {

constexpr unsigned masks87 = 0x3F;
constexpr unsigned control87 = 0xF3F; // exception masks, precision, rounding
constexpr unsigned masksSSX = 0x1F80;
constexpr unsigned flagsSSX = 0x3F;
constexpr unsigned wholeSSX = 0xFFFF;

constexpr struct {
    int code;
    const char* text; // null: see getInfo
} faults[] = {{SIGFPE, nullptr},
              {SIGILL, nullptr},
              {SIGSEGV, nullptr},
              {SIGABRT, "Abort (SIGABRT)."},
              {SIGBUS, "Bus error (SIGBUS)."},
              {SIGTRAP, "Breakpoint or trap (SIGTRAP)."},
              {SIGSYS, "System call that is not allowed (SIGSYS)."}};

void handleFaultsBy(psSignalHandler handler) {
    for (const auto& fault : faults) {
        psKeepSignalHandler(fault.code, handler);
    }
}

bool installHandlers() {
    psPrepareAbortQuestion();
    handleFaultsBy(tsSignal::sig_fpe);
    return true;
}

// The thread of the innermost guard: the one that runs tests.
pthread_t g_thread = pthread_self();

[[maybe_unused]] const bool installed = installHandlers();

} // namespace

constinit sigjmp_buf tsSignal::m_jmpbuf = {};
constinit volatile sig_atomic_t tsSignal::m_code = 0;
constinit volatile sig_atomic_t tsSignal::m_armed = 0;
constinit const char* tsSignal::m_subject = "between tests";

const char* tsSignal::getInfo(int code) {
    switch (code) {
    case SIGSEGV: return "Illegal storage access.";
    case SIGFPE: return "FP fail, such as overflow, division by zero, invalid operation.";
    case SIGILL: return "Illegal instruction.";
    default: return "Unknown exception";
    }
}

const char* tsSignal::faultText(int code) {
    for (const auto& fault : faults) {
        if (fault.code == code && fault.text) {
            return fault.text;
        }
    }
    return getInfo(code);
}

void tsSignal::leaveToSystem() {
    handleFaultsBy(SIG_DFL);
}

// Why the process cannot go on with a fault; null when it can.
const char* tsSignal::reasonToEnd(int code) {
    if (!pthread_equal(pthread_self(), g_thread)) {
        return "in a thread of the library";
    }
    return m_armed && code == SIGABRT && psMemoryIsDestroyed() ? "as memory is destroyed" : nullptr;
}

void tsSignal::sig_fpe(int code) {
    m_code = code;
    const char* const reason = reasonToEnd(code);
    if (reason) {
        const char* const parts[] = {"--NTK. Signal: ",
                                     faultText(code),
                                     " This ends the process, ",
                                     reason,
                                     ": ",
                                     m_subject,
                                     "\n"};
        psSayLastWords(parts, sizeof parts / sizeof parts[0]);
    }
    if (!m_armed || reason) {
        // Blocked until this handler returns: the core file then shows the faulting instruction.
        signal(code, SIG_DFL);
        raise(code);
        return;
    }
    m_armed = 0; // the clean-up must not jump here again
    siglongjmp(m_jmpbuf, -1);
}

void tsSignal::run(void (*call)(void*), void* callable) {
    const Frame frame;
    if (sigsetjmp(m_jmpbuf, 1) == 0) { // 1: the handled signal must not stay blocked
        m_armed = 1;
        call(callable);
        raisePending87();
        return;
    }
    frame.restoreMasked();
    throw psException(faultText(m_code));
}

tsSignal::Frame::Frame()
    : m_outerArmed(m_armed), m_control87(ntkFpuSsx4TS(ntkFpuGetControl, 0, 0)),
      m_wordSSX(ntkFpuSsx4TS(ntkSsxGet, 0, 0)) {
    m_armed = 0;
    g_thread = pthread_self();
    memcpy(&m_outerPoint, &m_jmpbuf, sizeof m_jmpbuf);
}

tsSignal::Frame::~Frame() {
    // An exception of the body may have passed by an x87 trap that was still to come.
    const unsigned flags = ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0);
    if (flags & masks87 & ~ntkFpuSsx4TS(ntkFpuGetControl, 0, 0)) {
        ntkFpuSsx4TS(ntkFpuClear, 0, 0);
    }
    m_armed = 0;
    memcpy(&m_jmpbuf, &m_outerPoint, sizeof m_jmpbuf);
    m_armed = m_outerArmed;
}

void tsSignal::Frame::restoreMasked() const {
    ntkFpuSsx4TS(ntkFpuClear, 0, 0); // first: the masks are loaded by a waiting instruction
    ntkFpuSsx4TS(ntkFpuSetControl, m_control87 | masks87, control87);
    ntkFpuSsx4TS(ntkSsxSet, (m_wordSSX & ~flagsSSX) | masksSSX, wholeSSX);
}

void tsSignal::raisePending87() {
    asm volatile("fwait");
}

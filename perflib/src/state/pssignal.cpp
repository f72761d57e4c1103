#include "pssignal.h"

#include <string.h>

#include <ntkcore.h>

namespace {

constexpr unsigned masks87 = 0x3F;
constexpr unsigned control87 = 0xF3F; // exception masks, precision, rounding
constexpr unsigned masksSSX = 0x1F80;
constexpr unsigned flagsSSX = 0x3F;
constexpr unsigned wholeSSX = 0xFFFF;

// A stack overflow leaves no room on the stack for the handler's frame.
void provideHandlerStack() {
    alignas(64) static char memory[64 * 1024];
    stack_t current;
    if (sigaltstack(nullptr, &current) == 0 && !(current.ss_flags & SS_DISABLE)) {
        return; // a sanitizer has provided one
    }
    stack_t stack = {};
    stack.ss_sp = memory;
    stack.ss_size = sizeof memory;
    sigaltstack(&stack, nullptr);
}

// sigaction, with what signal() gives here (the handler stays installed, calls are restarted) plus
// the other stack, for which signal() has no way to ask.
bool installHandlers() {
    provideHandlerStack();
    struct sigaction action = {};
    action.sa_handler = tsSignal::sig_fpe;
    action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (const int code : {SIGFPE, SIGILL, SIGSEGV}) {
        sigaction(code, &action, nullptr);
    }
    return true;
}

[[maybe_unused]] const bool installed = installHandlers();

} // namespace

constinit sigjmp_buf tsSignal::m_jmpbuf = {};
constinit volatile sig_atomic_t tsSignal::m_code = 0;
constinit volatile sig_atomic_t tsSignal::m_armed = 0;

const char* tsSignal::getInfo(int code) {
    switch (code) {
    case SIGSEGV: return "Illegal storage access.";
    case SIGFPE: return "FP fail, such as overflow, division by zero, invalid operation.";
    case SIGILL: return "Illegal instruction.";
    default: return "Unknown exception";
    }
}

void tsSignal::sig_fpe(int code) {
    m_code = code;
    if (!m_armed) {
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
    throw psException(getInfo());
}

tsSignal::Frame::Frame()
    : m_outerArmed(m_armed), m_control87(ntkFpuSsx4TS(ntkFpuGetControl, 0, 0)),
      m_wordSSX(ntkFpuSsx4TS(ntkSsxGet, 0, 0)) {
    m_armed = 0;
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

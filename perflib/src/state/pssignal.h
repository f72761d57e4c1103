#pragma once

#include <setjmp.h>
#include <signal.h>

#include "psexcept.h"

// Turns a fault of the measured code (SIGFPE, SIGILL, SIGSEGV, also SIGABRT, SIGBUS, SIGTRAP and
// SIGSYS) into a psException. The handler is installed by a static initialiser and stays: it serves
// any number of faults in one process, and psRenewSignals() sets it again. A fault outside a guard
// ends the process by that signal, as without the harness.
//
// So do, with a word of the reason, two faults that the process cannot survive: one in a thread
// that the measured code has started, which has no way to the guard of another stack, and an abort
// because the allocator found the heap destroyed.
//
// A fault is left by a jump, over the frames of the measured code: their destructors do not run.
// What a guarded body owns must therefore be released outside the guard.
class tsSignal {
public:
    // Runs body(); after a fault inside it throws psException(faultText(code())). Guards nest: a
    // fault belongs to the innermost one. Exceptions of the body pass through.
    //
    // After a fault the floating-point words are those of the entry (the kernel hands the handler
    // fresh ones, and the jump keeps them), but with flags down and every exception masked: code
    // that cleans up must not trap. The next test applies its own masks.
    template <class Body> static void guarded(Body body) {
        run([](void* callable) { (*static_cast<Body*>(callable))(); }, &body);
    }

    // The last signal that the handler saw; 0 before the first.
    static int code() { return m_code; }
    static const char* getInfo() { return getInfo(code()); }
    static const char* getInfo(int code);
    // The same, and the other signals by their names.
    static const char* faultText(int code);

    // What is running, for the last words of a process that a fault ends. Must live until the next.
    static void setSubject(const char* subject) { m_subject = subject; }
    // Faults end the process from now on, guard or not.
    static void leaveToSystem();

    static void sig_fpe(int code); // the handler

private:
    // What a guard found at its entry, and leaves behind in any case at its end.
    class Frame {
    public:
        Frame();
        ~Frame();
        Frame(const Frame&) = delete;
        Frame& operator=(const Frame&) = delete;
        void restoreMasked() const;

    private:
        sigjmp_buf m_outerPoint;
        sig_atomic_t m_outerArmed;
        unsigned m_control87;
        unsigned m_wordSSX;
    };

    // Holds the jump point. The body stays behind a pointer: code that is inlined into a function
    // with a jump point may find its variables changed after the jump.
    static void run(void (*call)(void*), void* callable);

    // An x87 exception waits for the next x87 instruction. Called inside the guard, so that it
    // does not trap in the harness later.
    static void raisePending87();

    static const char* reasonToEnd(int code);

    static sigjmp_buf m_jmpbuf;
    static volatile sig_atomic_t m_code;
    static volatile sig_atomic_t m_armed; // m_jmpbuf is a frame that still exists
    static const char* m_subject;
};

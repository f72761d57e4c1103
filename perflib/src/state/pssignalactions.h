#pragma once

// What the process does on signals, kept: measured code may set handlers of its own and block
// signals, and what it leaves would decide over the tests after it.

using psSignalHandler = void (*)(int);

// Sets the handler of a signal (SIG_DFL and SIG_IGN are such) and keeps it. It runs on the stack
// for handlers, and interrupted calls are restarted.
void psKeepSignalHandler(int code, psSignalHandler handler);
// Keeps what the process does on it now.
void psKeepSignalAsIs(int code);
// Sets everything kept again, and the signal mask that the process had at its start.
void psRenewSignals();

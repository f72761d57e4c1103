#pragma once

// A run that another process watches over, ntkguard: that one is told where the run is, and when
// the process has ended in a test, another process goes on behind that test as if nothing had been.
// Without a watcher, the usual case, nothing here does anything.

void psConnectGuard(); // at the start of the run
// The terminal that the watcher's standard error is, an open file; -1: it is none. That of this
// process goes through the watcher.
int psTerminalOfGuard();
// An earlier process of the run has made the outputs, with title and name line.
bool psContinuesRun();
// Makes what is added to such an output begin on a line of its own.
void psEndLastLine(const char* path);
bool psIsSummaryWritten(); // by an earlier process, which ended behind it
void psNoteSummaryWritten();
void psEndGuarded(); // all is written

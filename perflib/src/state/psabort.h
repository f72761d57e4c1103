#pragma once

// Why a process was told to abort. For the handler of SIGABRT, in the thread that called abort().

// Whether the C library did it on its own: its allocator or its stack guard found memory destroyed,
// and a program that goes on would fail later, in code that is not to blame. False for a call of
// abort(), a failed assertion and an exception that nobody caught.
bool psMemoryIsDestroyed();

// To be called once before: what loads itself when first used is then loaded.
void psPrepareAbortQuestion();

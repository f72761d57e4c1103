#pragma once

#include <kx.h>

// The parameters that the compression families share.

extern psStepIterator<int> g_huffLen; // registered, but no family takes it into its loops
extern psStepIterator<int> g_codeLen; // bytes of a file that are measured
extern psFileIterator g_codeFile;     // the corpus file

// Names, values and registration of the three; called by the session before it reads them.
void regTestParameters();

// The bytes that g_codeFile gives for the current g_codeLen: below 1 when the file cannot be read
// or, at every length after the first of a doubling progression, when it is not longer than the
// length before: the same bytes would be measured again.
int readCodeFile(void* buffer);

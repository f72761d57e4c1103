#pragma once

#include <string>

namespace compare {

// From now on the first SIGINT, SIGTERM or SIGHUP is only noted; another one ends the program.
// What the caller had ignored (nohup) stays ignored. SIGINT is answered at once by the text, on
// standard error.
void watchForInterruption(const std::string& answer);
// The signal that came, or 0.
int interruption();

} // namespace compare

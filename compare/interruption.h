#pragma once

namespace compare {

// From now on the first SIGINT, SIGTERM or SIGHUP is only noted; another one ends the program.
// What the caller had ignored (nohup) stays ignored.
void watchForInterruption();
// The signal that came, or 0.
int interruption();

} // namespace compare

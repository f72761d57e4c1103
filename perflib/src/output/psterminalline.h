#pragma once

#include "psstring.h"

// One line on a terminal that is renewed in place. The cursor waits at its begin, and the line is
// cleared with blanks, so that any terminal will do. There is one at most.

// From now on lines are shown on this open file; -1: on none.
void psSetTerminalLine(int file);
// Cut to the width of the terminal.
void psShowTerminalLine(const psString& text);
// Does nothing where nothing is shown. Calls nothing but write(): a signal handler may ask for it.
void psClearTerminalLine();

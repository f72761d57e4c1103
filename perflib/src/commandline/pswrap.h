#pragma once

#include "psstring.h"

// The lines of text broken at blanks where they are longer than columns. What is broken off stands
// under the text behind the line's first "= " or ": "; in a line without one (or with one far to
// the right) four columns farther in than the line itself. A word that is wider than the room keeps
// its width. columns 0: the text as it is.
psString psWrapLines(const psString& text, int columns);

// The width of standard output when it is a terminal, 80 when the terminal does not report it; else
// 0.
int psConsoleColumns();

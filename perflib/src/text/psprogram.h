#pragma once

#include "psstring.h"

// Where the program lies, and where a test finds its files.

psString psProgramDir(); // ends in a separator; empty when the program was called without one
bool psIsAbsolutePath(const psString& name);
// name in dir, or in the program's directory when dir is empty. An absolute name stays.
psString psPathIn(const psString& name, const psString& dir);
// Where a test's data file lies: in the directory for inputs ("-p").
psString psInPath(const psString& name);

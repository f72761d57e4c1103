#pragma once

#include "psstring.h"

// Which files the measured library was loaded from. The program brings a build of its own, and the
// loader's search path (LD_LIBRARY_PATH) may put another one before it, or, misspelt, may not.

// The library's shared objects in this process, as the loader found them.
psStringList psLoadedLibraries();
// The directory of the program's own builds: "lib" beside that of the program, or where an
// installation has put them.
psString psOwnLibraryDir();

// What the log says of them: a line for each file that a directory of searchPath (separated by ":")
// gave and that is not in ownDir, for each that the loader passed over there, as it is for another
// kind of processor or of another version, and for each of these directories that holds none.
// Empty when all is as built.
psString psLibraryOriginText(const psStringList& files, const psString& ownDir,
                             const psString& searchPath);

#pragma once

#include <sys/stat.h>

#include <cstdio>

#include "psstring.h"

// The file opened with the psOpenMode bits; null where it cannot be. reason then completes "Can't
// open file X to write" where there is more to say than the user sees by looking at the file;
// else it is empty.
//
// A regular file that is opened new is locked until it is closed, before anything in it is lost:
// two runs that write one table destroy it. It is written at its end, wherever another program has
// put that. Programs that append share the file, as whole lines do no harm to each other.
//
// A named pipe is refused while nobody has its other end, where opening it would wait for ever.
FILE* psOpenFile(const psString& name, int mode, psString& reason);

// Who holds a lock on the file: "process 4711 (ntkperf)"; "another process" where the system does
// not tell; empty when it is this process alone.
psString psLockHolderText(const struct stat& file);

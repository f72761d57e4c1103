#pragma once

#include "pscpuid.h"
#include "psstring.h"

// What the harness asks about the machine. Nothing is reported as an error: what cannot be had is
// empty or 0.

// "Linux (release, version)", as uname reports it.
psString psOS();
psString psHost();
// How often this thread has lost its processor to another one, so far.
long psInvoluntarySwitches();
// Processors online, at least 1.
int psGetNumOfProcessors();
// The processor's own name without leading, trailing and doubled blanks; empty when it has none.
psString psCpuBrand(psCpuidReader read = psReadCpuid);

// Asks for the size in bytes; a status below or above 0, or a size below 1, is no answer.
using psCacheSizeQuery = int (*)(int* sizeBytes);

// Bytes of the largest cache: the library's answer, or else of those that the processor lists
// (psCpuCaches); 0 when neither answers, and without asking for the list on a processor older than
// leaf 4.
int psGetMaxCacheSizeB();
int psMaxCacheSizeB(psCacheSizeQuery query, psCpuidReader read);

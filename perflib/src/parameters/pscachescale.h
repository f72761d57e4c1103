#pragma once

#include <ntkdefs.h>

// The arithmetic of cache-size iteration: how large the data of a test may be, and by which power
// of two a size has to change to get there. Sizes are in bytes, except the values and sides that
// are scaled.

struct psSizeBounds {
    int low, high;
};

// Data in the cache: from lowFactor of it up to nine tenths, so that the rest of the program has
// room too. Data out of it: anything a little larger than the cache.
psSizeBounds psInCacheBounds(int cacheBytes, double lowFactor);
psSizeBounds psOutOfCacheBounds(int cacheBytes);

// A size in 64 bits as an int; the largest int when it is larger.
int psClampedBytes(long long bytes);

// The doublings of current that exceed target; negative: the halvings that fall below it. What can
// never be reached, from 0 upwards or to 0 downwards, gives more steps than any size survives.
int psPowerOfTwoSteps(int current, int target);

// value times 2 to the power of steps, halves cut off; 0 when that is no int.
int psScaled(int value, int steps);

// The same for an area: each doubling goes to the smaller side, each halving to the larger one,
// the width when both are equal. False (size unchanged) when a side would vanish or overflow.
bool psScaleArea(NtkiSize& size, int steps);

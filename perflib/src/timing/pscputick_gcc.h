#pragma once

// The clock source of all measurements: the processor's time-stamp counter.

// Reads the counter at one end of a measured span.
using psClockReader = unsigned long long (*)();

// Of the library; the environment hook may point them at better ones for this processor. Set from
// the very start, so that a harness without a hook measures too.
extern psClockReader ntk_StartCpuClocks;
extern psClockReader ntk_StopCpuClocks;

// MHz from the clocks that passed in two spans of one second. Single precision is enough here: it
// is good for 1 in 16 million.
int psMeasuredMHz(long long firstClocks, long long secondClocks);

// The nominal frequency that a measured one stands for when it is within 3% of it, else mhz.
int psNominalMHz(int mhz);

class psCpuTicker {
public:
    // MHz. The first call on a boot of the machine takes two to three seconds, later ones nothing.
    static int getFreq();
    // MHz, or 0 when it has not been measured on this boot yet; never waits.
    static int knownFreq();
    static double knownSeconds(long long clocks); // 0 while the frequency is not known
    // Clocks of the processor in one clock of the reader.
    static int getClockFactor() { return 1; }

private:
    static int m_freqMHz;
    static bool m_empty; // not measured yet
};

#pragma once

#include <map>
#include <string>
#include <vector>

// Which processor both workers are pinned to.
namespace compare {

// Since the system started, in the system's ticks.
struct CpuTimes {
    unsigned long long idle = 0;
    unsigned long long all = 0;
};

// From the text of /proc/stat.
std::map<int, CpuTimes> parseCpuTimes(const std::string& stat);

// The allowed processor that was idle for the largest share of the time between two samples. The
// last one of several: the first ones serve the system's interrupts. One is allowed at least.
int quietestCpu(const std::vector<int>& allowed, const std::map<int, CpuTimes>& before,
                const std::map<int, CpuTimes>& after);

// The asked one, or the quietest one when that is negative. Throws CannotMeasure when this process
// must not use it.
int chooseCpu(int asked);

} // namespace compare

#include "placement.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include <sched.h>

#include "runner.h"

namespace compare {

namespace {

// Ten of the system's usual ticks.
constexpr auto observation = std::chrono::milliseconds(100);

std::vector<int> allowedCpus() {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof set, &set);
    std::vector<int> allowed;
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
        if (CPU_ISSET(cpu, &set)) {
            allowed.push_back(cpu);
        }
    }
    return allowed;
}

std::map<int, CpuTimes> sampleCpuTimes() {
    std::ifstream file("/proc/stat");
    return parseCpuTimes({std::istreambuf_iterator<char>(file), {}});
}

std::string joined(const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
        text += (text.empty() ? "" : ", ") + std::to_string(number);
    }
    return text;
}

double idleShare(const std::map<int, CpuTimes>& before, const std::map<int, CpuTimes>& after,
                 int cpu) {
    if (!before.contains(cpu) || !after.contains(cpu)) {
        return 0;
    }
    const auto since = [](unsigned long long now, unsigned long long then) {
        return static_cast<double>(now) - static_cast<double>(then); // may run back a little
    };
    const double idle = since(after.at(cpu).idle, before.at(cpu).idle);
    const double all = since(after.at(cpu).all, before.at(cpu).all);
    return all > 0 ? idle / all : 1; // no tick was counted: it slept
}

} // namespace

std::map<int, CpuTimes> parseCpuTimes(const std::string& stat) {
    std::map<int, CpuTimes> times;
    std::istringstream lines(stat);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string name;
        fields >> name;
        if (!name.starts_with("cpu") || name == "cpu") {
            continue;
        }
        CpuTimes& cpu = times[std::stoi(name.substr(3))];
        // user nice system idle iowait irq softirq steal; what follows is part of "user"
        unsigned long long ticks = 0;
        for (int field = 0; field < 8 && fields >> ticks; ++field) {
            cpu.all += ticks;
            cpu.idle += field == 3 || field == 4 ? ticks : 0;
        }
    }
    return times;
}

int quietestCpu(const std::vector<int>& allowed, const std::map<int, CpuTimes>& before,
                const std::map<int, CpuTimes>& after) {
    return *std::max_element(allowed.rbegin(), allowed.rend(), [&](int left, int right) {
        return idleShare(before, after, left) < idleShare(before, after, right);
    });
}

int chooseCpu(int asked) {
    const std::vector<int> allowed = allowedCpus();
    if (asked >= 0 && std::find(allowed.begin(), allowed.end(), asked) == allowed.end()) {
        throw CannotMeasure("processor " + std::to_string(asked) +
                            " may not be used here: choose one of " + joined(allowed));
    }
    if (asked >= 0 || allowed.empty()) {
        return asked;
    }
    const auto before = sampleCpuTimes();
    std::this_thread::sleep_for(observation);
    return quietestCpu(allowed, before, sampleCpuTimes());
}

} // namespace compare

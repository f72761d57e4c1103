// Programs that are run, and the neighbour that disturbs them.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

struct Program {
    std::vector<std::string> words; // path and arguments
    std::string libraries = {};     // folder that LD_LIBRARY_PATH names; empty: none
    int cpu = -1;                   // that it is pinned to; -1: none
};
// Runs it to its end; what it prints goes away. Throws a std::runtime_error that quotes its last
// words on standard error unless it ends with a status of at most mostStatus.
void runProgram(const Program& program, int mostStatus);

// A process that spins on one processor while it lives.
class Neighbour {
public:
    explicit Neighbour(int cpu);
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;
    ~Neighbour();

private:
    pid_t m_process = -1;
};

// The last of the processors that this process may use: the system's own work is on the first.
int lastProcessor();

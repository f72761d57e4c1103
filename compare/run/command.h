#pragma once

#include "process.h"
#include "runner.h"

// What a worker of a plan is started with.
namespace compare {

// The library path of a worker: the given build, the own one for what it lacks, the user's path.
std::string libraryPath(const std::string& directory, const std::string& ownLibraries,
                        const std::string& usersPath);

Command workerCommand(const Plan& plan, Side side, int cpu);

bool isOwnBuild(const std::string& directory);

} // namespace compare

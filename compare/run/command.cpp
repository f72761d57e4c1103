#include "command.h"

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

namespace compare {

namespace {

const std::string libraryPathName = "LD_LIBRARY_PATH";

std::string absolute(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

} // namespace

bool isOwnBuild(const std::string& directory) {
    return directory == "own" || directory == ".";
}

std::string libraryPath(const std::string& directory, const std::string& ownLibraries,
                        const std::string& usersPath) {
    std::string path = isOwnBuild(directory) ? "" : absolute(directory) + ":";
    path += absolute(ownLibraries);
    // An empty entry would mean the current folder.
    return usersPath.empty() ? path : path + ":" + usersPath;
}

Command workerCommand(const Plan& plan, Side side, int cpu) {
    Command command{plan.worker, plan.keys[side], {}, cpu};
    for (char** variable = environ; *variable; ++variable) {
        if (!std::string(*variable).starts_with(libraryPathName + "=")) {
            command.environment.emplace_back(*variable);
        }
    }
    const char* usersPath = getenv(libraryPathName.c_str());
    command.environment.push_back(
        libraryPathName + "=" +
        libraryPath(plan.directories[side], plan.ownLibraries, usersPath ? usersPath : ""));
    return command;
}

} // namespace compare

// A program that reads one of the formats, where it is installed.
#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "../../scratch.h"

namespace report {

namespace fs = std::filesystem;

class Reader : public ::testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) const {
        return writeFile(m_directory.path(name), text);
    }
    std::string read(const std::string& name) const { return readFile(m_directory.path(name)); }

    struct Answer {
        int status = -1;
        std::string text; // of both its outputs
    };
    static Answer answerOf(const std::string& command) {
        Answer answer;
        FILE* pipe = popen((command + " 2>&1").c_str(), "r");
        if (!pipe) {
            return answer;
        }
        std::array<char, 4096> part{};
        while (const auto read = std::fread(part.data(), 1, part.size(), pipe)) {
            answer.text.append(part.data(), read);
        }
        const int status = pclose(pipe);
        answer.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return answer;
    }
    // Debian's Python: another one that comes first in PATH has not its packages.
    static Answer python(const std::string& arguments) {
        return answerOf("/usr/bin/python3 " + arguments);
    }
    static bool hasPython(const std::string& modules) {
        return python("-c 'import " + modules + "'").status == 0;
    }

    const TemporaryDirectory m_directory;
    const fs::path m_folder = m_directory.path();
};

} // namespace report

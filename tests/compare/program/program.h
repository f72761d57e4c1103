// ntkcompare with a worker that plays a script for each side (see run/fakeworker/main.cpp).
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "../../scratch.h"
#include "../../texts.h"
#include "process.h"

namespace compare {

namespace fs = std::filesystem;

class Program : public ::testing::Test {
protected:
    // Of one case whose new side takes as many clocks.
    static std::string script(double clocks, const std::string& more = "") {
        return "case ntksPlayed_8u Length=1000\nturns " + std::to_string(clocks) + "\n" + more;
    }

    Program() {
        play(script(1e6), script(1e6));
        // The fake worker gets its side, its script and its log in place of keys.
        writeProgram("worker", "side=base; for key; do [ \"$key\" = -fnew ] && side=new; done\n"
                               "exec " NTK_FAKE_WORKER_FILE " $side " +
                                   path("$side.script") + " " + path("log") + "\n");
    }

    std::string path(const std::string& name) const { return m_directory.path(name); }
    void write(const std::string& name, const std::string& text) const {
        writeFile(path(name), text);
    }
    std::string writeProgram(const std::string& name, const std::string& shellScript) const {
        write(name, "#!/bin/sh\n" + shellScript);
        fs::permissions(m_folder / name, fs::perms::owner_all);
        return path(name);
    }
    // What the sides play; unless it is said they are equal.
    void play(const std::string& base, const std::string& changed) const {
        write("base.script", base);
        write("new.script", changed);
    }
    std::string read(const std::string& name) const { return readFile(path(name)); }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    Outcome run(const std::vector<std::string>& arguments, Console console = Console::read) const {
        return runCommand({.program = NTK_COMPARE_FILE,
                           .arguments = arguments,
                           .directory = m_folder.string(),
                           .console = console});
    }
    // With 10 ms of turns a case.
    std::vector<std::string> played(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {
            "--worker", path("worker"),       "--time=0.01",     "own",
            "own",      "--base-keys=-fbase", "--new-keys=-fnew"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }

    const TemporaryDirectory m_directory;
    const fs::path m_folder = m_directory.path();
};

} // namespace compare

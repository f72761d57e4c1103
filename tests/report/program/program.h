// ntkreport in a folder with small files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../../scratch.h"
#include "process.h"

namespace report {

namespace fs = std::filesystem;

class Program : public ::testing::Test {
protected:
    static std::string table(const std::string& started, double clocks) {
        return "Processor,A processor  x2  2.00 GHz\nComputer,desk\nLibrary,ntkDC  12.0.0  Nov 22 "
               "2026\nStart," +
               started +
               "\nFunction,Types,Length,CodeFile,Clocks,Unit,Result,Comment,Spread\n"
               "ntksEncodeLZ4_8u,8u,16384,bib," +
               std::to_string(clocks) + ",e,OK,nLps=8,1.0\n";
    }

    Program() {
        write("a.csv", table("Sun Nov 22 03:44:21 2026", 4));
        write("b.csv", table("Sun Nov 22 04:44:21 2026", 5));
    }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
    void write(const std::string& name, const std::string& text) const {
        writeFile(path(name), text);
    }
    std::string read(const std::string& name) const { return readFile(path(name)); }
    Outcome run(const std::vector<std::string>& arguments, Console console = Console::read,
                const std::vector<std::string>& environment = {}) const {
        Command command;
        command.program = NTK_REPORT_FILE;
        command.arguments = arguments;
        command.directory = m_folder.string();
        command.console = console;
        command.environment = environment;
        return runCommand(command);
    }

    const TemporaryDirectory m_directory;
    const fs::path m_folder = m_directory.path();
};

} // namespace report

// ntkreport in a folder with small files.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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
        std::string name = (fs::temp_directory_path() / "ntkreportXXXXXX").string();
        m_folder = mkdtemp(name.data());
        write("a.csv", table("Sun Nov 22 03:44:21 2026", 4));
        write("b.csv", table("Sun Nov 22 04:44:21 2026", 5));
    }
    ~Program() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary) << text;
    }
    std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder / name).rdbuf();
        return text.str();
    }
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

    fs::path m_folder;
};

} // namespace report

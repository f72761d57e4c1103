// Files of a test, read.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "files.h"

namespace report {

class Scratch : public ::testing::Test {
protected:
    Scratch() {
        std::string name = (std::filesystem::temp_directory_path() / "ntkreportXXXXXX").string();
        m_folder = mkdtemp(name.data());
    }
    ~Scratch() override { std::filesystem::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }
    Reading read(const std::string& text) const {
        Reading reading;
        readFile(write("file", text), reading);
        return reading;
    }
    // The folder's name, which differs from test to test, taken out of a sentence.
    std::string plain(std::string sentence) const {
        for (std::size_t at; (at = sentence.find(m_folder.string() + "/")) != std::string::npos;) {
            sentence.erase(at, m_folder.string().size() + 1);
        }
        return sentence;
    }

    std::filesystem::path m_folder;
};

} // namespace report

// Files of a test, read.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "../../scratch.h"
#include "files.h"

namespace report {

class Scratch : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return m_directory.path(name); }
    std::string write(const std::string& name, const std::string& text) const {
        return writeFile(path(name), text);
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

    const TemporaryDirectory m_directory;
    const std::filesystem::path m_folder = m_directory.path();
};

} // namespace report

// Files of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

// Removed with all its files at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        if (!mkdtemp(m_path.data())) {
            throw std::runtime_error("cannot make a directory like " + m_path);
        }
    }
    ~TemporaryDirectory() { std::filesystem::remove_all(m_path); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return m_path; }
    std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path = std::filesystem::temp_directory_path() / "ntk-test-XXXXXX";
};

inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::string writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

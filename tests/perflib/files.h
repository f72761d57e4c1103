#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "../scratch.h"
#include "../texts.h"

inline std::string testPath(const std::string& name) {
    static const TemporaryDirectory directory;
    return directory.path(name);
}

// Standard output goes to the file (made anew) while this lives.
class StdoutTo {
public:
    explicit StdoutTo(const std::string& path) {
        fflush(stdout);
        m_saved = dup(STDOUT_FILENO);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        dup2(file, STDOUT_FILENO);
        close(file);
    }
    ~StdoutTo() {
        fflush(stdout);
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
    }
    StdoutTo(const StdoutTo&) = delete;
    StdoutTo& operator=(const StdoutTo&) = delete;

private:
    int m_saved;
};

// No file may grow past the size while this lives: a disk that is full after that many bytes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        const rlimit limit = {bytes, m_saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_saved); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_saved;
};

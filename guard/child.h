#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace guard {

// A file that processes started from here do not get by themselves.
class File {
public:
    explicit File(int number = -1) : m_number(number) {}
    File(File&& other) noexcept : m_number(other.release()) {}
    File& operator=(File&& other) noexcept;
    ~File() { close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int number() const { return m_number; }
    void close();

private:
    int release();
    int m_number;
};

struct Pipe {
    Pipe(); // throws std::system_error
    File reader, writer;
};

// A file in memory that holds the text.
File fileOf(const std::string& text);

// The program as a process that ends when this one does.
struct Child {
    pid_t process = -1;
    File progress{}; // in memory: what it says of itself
    Pipe errors{};   // its standard error
};

// past: the file for a successor; null: the first process of a run. Throws std::system_error when
// the program cannot be started.
Child startProgram(const std::vector<std::string>& words, const std::string* past);

// What the program writes to standard error when it is run with these variables besides, and
// nothing else of it is seen.
std::string errorsOf(const std::vector<std::string>& words,
                     const std::vector<std::string>& environment);

} // namespace guard

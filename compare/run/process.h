#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

// A program that is spoken to line by line: it reads its descriptor 3 and writes descriptor 4.
// Whatever it does, it is gone when this object is.
namespace compare {

struct Command {
    std::string program;                  // path
    std::vector<std::string> arguments;   // without the program itself
    std::vector<std::string> environment; // NAME=value, all of it
    int cpu = -1;                         // -1: any
};

struct Received {
    enum Kind {
        line,
        closed,  // nobody can write any more
        late,    // no whole line in time
        hurried, // nor in the shorter time of who is in a hurry
        tooLong, // text is its start
    };
    Kind kind = line;
    std::string text; // without its end
};

// Somebody who waits may come into a hurry: then no answer is waited for longer than these seconds.
struct Hurry {
    std::function<bool()> hasCome = nullptr; // asked now and then while it is waited; may be empty
    double seconds = 1;
};

// A descriptor with an owner.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(other.m_number) { other.m_number = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();
    int get() const { return m_number; }

private:
    int m_number;
};

class Process {
public:
    // Throws std::system_error when the system has no process, pipe or memory left. A program that
    // cannot be executed ends with status 127 and says why in its last words.
    explicit Process(const Command& command);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    // False when nobody listens. The caller ignores SIGPIPE.
    bool send(const std::string& line);
    // The next line; a process that ended has still said what it said before.
    Received receive(double patienceSeconds, const Hurry& hurry = {});
    // Whether it said anything that has not been received.
    bool hasMore();

    // Waits for the end. How it ended: "killed by SIGSEGV", "ended with status 127"; empty when it
    // did not in this time.
    std::string end(double patienceSeconds);

    // The end of what it wrote to standard output and standard error: a few lines, printable.
    std::string lastWords() const;
    // What it wrote until now is none of its last words any more.
    void forgetOutput();

private:
    [[noreturn]] void becomeProgram(const Command& command, pid_t parent, int ordersEnd,
                                    int answersEnd) const;
    bool hasEnded();
    void readSome();

    pid_t m_pid = -1;
    int m_status = 0;         // of the wait, once ended
    Descriptor m_orders;      // to write
    Descriptor m_answers;     // to read
    Descriptor m_output;      // what it wrote elsewhere
    std::string m_unreceived; // read, but not yet received
    bool m_isClosed = false;
};

// Text of others for a message: a bounded length, unprintable bytes as "?".
std::string printable(const std::string& text, size_t length);

} // namespace compare

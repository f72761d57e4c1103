#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace report {

// A file of which nothing can be used; what() is the sentence for the user.
struct Unreadable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A file line by line. Of a file of any size it holds the present line and a piece of what follows.
class LineReader {
public:
    // Throws Unreadable, as next() does.
    explicit LineReader(const std::string& file);
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    bool next(); // false: there are no more
    // Without its end, LF or CR LF; until the next call of next().
    std::string_view line() const { return m_line; }
    long long number() const { return m_number; } // from 1
    // False: the file ends within it.
    bool isWhole() const { return m_isWhole; }

private:
    bool readMore();

    std::string m_file;
    int m_descriptor = -1;
    std::string m_text; // read, and not yet passed over
    std::size_t m_at = 0;
    std::string_view m_line;
    long long m_number = 0;
    bool m_isWhole = true;
};

} // namespace report

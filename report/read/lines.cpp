#include "lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace report {

namespace {

constexpr std::size_t pieceBytes = 1 << 20;
// Far above any line of a run; what is longer is a file of something else.
constexpr std::size_t mostLineBytes = 256 << 20;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // some editors write it

[[noreturn]] void refuse(const std::string& file) {
    throw Unreadable("cannot read " + file + ": " + std::strerror(errno));
}

} // namespace

LineReader::LineReader(const std::string& file)
    : m_file(file), m_descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (m_descriptor < 0) {
        refuse(file);
    }
}

LineReader::~LineReader() {
    close(m_descriptor);
}

bool LineReader::readMore() {
    m_text.erase(0, m_at);
    m_at = 0;
    const std::size_t had = m_text.size();
    m_text.resize(had + pieceBytes);
    ssize_t got = -1;
    do {
        got = read(m_descriptor, m_text.data() + had, pieceBytes);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        refuse(m_file);
    }
    m_text.resize(had + static_cast<std::size_t>(got));
    return got > 0;
}

bool LineReader::next() {
    std::size_t searched = 0; // of the line
    std::size_t end = std::string::npos;
    m_isWhole = true;
    while ((end = m_text.find('\n', m_at + searched)) == std::string::npos) {
        searched = m_text.size() - m_at;
        if (searched > mostLineBytes) {
            throw Unreadable(m_file + " is no file of a run: it has a line of more than " +
                             std::to_string(mostLineBytes >> 20) + " MiB");
        }
        if (!readMore()) {
            m_isWhole = false;
            end = m_text.size();
            break;
        }
    }
    if (!m_isWhole && end == m_at) {
        return false;
    }
    m_line = std::string_view(m_text).substr(m_at, end - m_at);
    m_at = m_isWhole ? end + 1 : end;
    if (m_line.ends_with('\r')) {
        m_line.remove_suffix(1);
    }
    if (++m_number == 1 && m_line.starts_with(byteOrderMark)) {
        m_line.remove_prefix(byteOrderMark.size());
    }
    return true;
}

} // namespace report

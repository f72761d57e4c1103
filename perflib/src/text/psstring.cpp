#include "psstring.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>

#include <algorithm>
#include <functional>

#include "psparse.h"
#include "psplainlocale.h"

namespace {

// The longest text whose capacity is still an int.
constexpr int maxLength = INT_MAX - 16;

int lengthOf(const char* text) {
    const size_t length = text ? std::strlen(text) : 0;
    return length > static_cast<size_t>(maxLength) ? INT_MAX : static_cast<int>(length);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Position of the last path separator, -1 when there is none.
int lastSlash(const psString& path) {
    return std::max(path.rfind("/"), path.rfind("\\"));
}

} // namespace

psString::psString(const char* text) : psString(text, lengthOf(text)) {}

psString::psString(const char* text, int length) {
    allocate(text ? length : 0);
    if (m_length > 0) {
        std::memcpy(m_data, text, static_cast<size_t>(m_length));
    }
}

psString::psString(char c) : psString(&c, 1) {}

psString::psString(const psString& other) : psObject(other) {
    // A string that owns no buffer is copied without taking one.
    if (other.m_data) {
        append(other.m_data, other.m_length);
    }
}

psString::psString(psString&& other) noexcept : psObject(other) {
    swapBuffer(other);
    other.m_bad = false;
}

psString::~psString() {
    std::free(m_data);
}

psString& psString::operator=(const psString& other) {
    if (this != &other) {
        *this = psString(other);
    }
    return *this;
}

psString& psString::operator=(psString&& other) noexcept {
    if (this != &other) {
        swapBuffer(other);
        m_bad = false;
        other.init();
    }
    return *this;
}

// Through a temporary, because text may lie inside this string.
psString& psString::operator=(const char* text) {
    return *this = psString(text);
}

psString& psString::assign(const char* text) {
    return *this = text;
}

psString& psString::assign(char c) {
    return *this = psString(c);
}

psString& psString::assign(const psString& other) {
    return *this = other;
}

void psString::init() {
    std::free(m_data);
    m_data = nullptr;
    m_length = 0;
    m_capacity = 0;
    m_bad = false;
}

void psString::swapBuffer(psString& other) {
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_capacity, other.m_capacity);
}

void psString::allocate(int n) {
    n = std::max(n, 0);
    if (n > maxLength) {
        init();
        return;
    }
    const int capacity = capacityFor(n);
    if (capacity == m_capacity) {
        std::memset(m_data, 0, static_cast<size_t>(m_capacity));
    } else {
        std::free(m_data);
        m_data = static_cast<char*>(std::calloc(static_cast<size_t>(capacity), 1));
        m_capacity = m_data ? capacity : 0;
    }
    m_length = m_data ? n : 0;
}

void psString::growBy(int n) {
    if (n < 0) {
        return;
    }
    if (n < m_capacity - m_length) {
        m_length += n;
        return;
    }
    psString grown;
    grown.allocate(n > maxLength - m_length ? INT_MAX : m_length + n);
    if (grown.m_data && m_data) {
        std::memcpy(grown.m_data, m_data, static_cast<size_t>(m_length));
    }
    swapBuffer(grown);
}

void psString::resize(int n, char fill) {
    if (n <= m_length) {
        *this = substr(0, std::max(n, 0));
        return;
    }
    const int oldLength = m_length;
    growBy(n - m_length);
    if (m_length == n) {
        std::memset(m_data + oldLength, fill, static_cast<size_t>(n - oldLength));
    }
}

psString psString::substr(int pos, int count) const {
    pos = std::clamp(pos, 0, m_length);
    const int rest = m_length - pos;
    return psString(c_str() + pos, count < 0 ? rest : std::min(count, rest));
}

psString psString::substr(int pos) const {
    return substr(pos, npos);
}

psString& psString::append(const char* text, int length) {
    const int oldLength = m_length;
    // Growing moves the buffer, and text may lie inside it (s += s).
    const bool inside =
        m_data && std::greater_equal<>()(text, m_data) && std::less<>()(text, m_data + m_capacity);
    const ptrdiff_t offset = inside ? text - m_data : 0;
    growBy(length);
    if (length > 0 && m_length == oldLength + length) {
        std::memmove(m_data + oldLength, inside ? m_data + offset : text,
                     static_cast<size_t>(length));
    }
    return *this;
}

psString& psString::operator+=(const psString& other) {
    return append(other.c_str(), other.m_length);
}

psString& psString::operator+=(const char* text) {
    return append(text, lengthOf(text));
}

psString& psString::operator+=(char c) {
    return append(&c, 1);
}

int psString::find(const psString& s, int from) const {
    from = std::max(from, 0);
    if (from > m_length) {
        return npos;
    }
    const char* hit = std::strstr(c_str() + from, s.c_str());
    return hit ? static_cast<int>(hit - c_str()) : npos;
}

int psString::rfind(const psString& s) const {
    for (int i = m_length - s.m_length; i >= 0; --i) {
        if (std::memcmp(c_str() + i, s.c_str(), static_cast<size_t>(s.m_length)) == 0) {
            return i;
        }
    }
    return npos;
}

bool psString::startsWith(const psString& s) const {
    return std::strncmp(c_str(), s.c_str(), static_cast<size_t>(s.m_length)) == 0;
}

int psString::compare(const psString& s) const {
    const int common = std::min(m_length, s.m_length);
    for (int i = 0; i < common; ++i) {
        const auto a = static_cast<signed char>((*this)[i]);
        const auto b = static_cast<signed char>(s[i]);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return m_length - s.m_length;
}

bool psString::operator==(const psString& s) const {
    return *this == s.c_str();
}

bool psString::operator==(const char* s) const {
    return std::strcmp(c_str(), s ? s : "") == 0;
}

// A carriage return is cut in front only: lines read from files with CR-LF ends keep theirs.
void psString::trim() {
    int first = 0;
    while (isBlank((*this)[first]) || (*this)[first] == '\r') {
        ++first;
    }
    int end = m_length;
    while (end > first && isBlank((*this)[end - 1])) {
        --end;
    }
    *this = substr(first, end - first);
}

psString psString::trimmed() const {
    psString s(*this);
    s.trim();
    return s;
}

psString psString::toLower() const {
    const psPlainLocale plain;
    psString lower(*this);
    for (int i = 0; i < lower.m_length; ++i) {
        lower.at(i) = static_cast<char>(std::tolower(static_cast<unsigned char>(lower[i])));
    }
    return lower;
}

psString psString::getFileName() const {
    return substr(lastSlash(*this) + 1);
}

psString psString::getFileDir() const {
    return substr(0, lastSlash(*this) + 1);
}

psString psString::getFileTitle() const {
    const psString name = getFileName();
    return name.substr(0, name.rfind("."));
}

void psString::parse(psStringList& words, const psString& separators) const {
    psParse(*this).parse(words, separators);
}

void psString::parse(psString& a, psString& b, const psString& separators) const {
    psParse(*this).parse(a, b, separators);
}

void psString::parse(psString& a, psString& b, psString& c, const psString& separators) const {
    psParse(*this).parse(a, b, c, separators);
}

psString operator+(const psString& a, const psString& b) {
    psString sum(a);
    sum += b;
    return sum;
}

psString operator+(const char* a, const psString& b) {
    return psString(a) + b;
}

psString operator+(const psString& a, const char* b) {
    psString sum(a);
    sum += b;
    return sum;
}

// Conversions between strings and values: printf formats out, sscanf formats in, whatever locale
// the measured library sets.
#include "psstring.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "psplainlocale.h"

namespace {

bool isHexadecimal(const psString& s) {
    return s.length() >= 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
}

// sscanf returns EOF, not 0, for an empty text: the value then keeps its default, and the text is
// not bad.
void setBadFrom(const psString& s, int sscanfResult) {
    s.setBad(sscanfResult == 0);
}

} // namespace

psString psFormat(const char* format, ...) {
    char shortText[256];
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const psPlainLocale plain;
    const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    psString text;
    if (length >= 0 && length < static_cast<int>(sizeof shortText)) {
        text.append(shortText, length);
    } else if (length > 0) {
        text.allocate(length);
        if (text.length() == length) {
            std::vsnprintf(&text.at(0), static_cast<size_t>(length) + 1, format, again);
        }
    }
    va_end(again);
    va_end(arguments);
    return text;
}

psString& operator<<(psString& s, const char* text) {
    return s += text;
}

psString& operator<<(psString& s, const psString& text) {
    return s += text;
}

psString& operator<<(psString& s, int value) {
    return s += psFormat("%d", value);
}

psString& operator<<(psString& s, long long value) {
    return s += psFormat("%lld", value);
}

// Through the signed format, as all 64-bit integers.
psString& operator<<(psString& s, unsigned long long value) {
    return s << static_cast<long long>(value);
}

psString& operator<<(psString& s, double value) {
    return s += psFormat("%.3g", value);
}

psString& operator<<(psString& s, float value) {
    return s << static_cast<double>(value);
}

psString& operator<<(psString& s, bool value) {
    return s += value ? "yes" : "no";
}

psString& operator<<(psString& s, char value) {
    return s += value;
}

psString& operator<<(psString& s, const void* value) {
    if (value == nullptr) {
        return s += "NULL";
    }
    return s += psFormat("%llX",
                         static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(value)));
}

void operator<<(int& value, const psString& s) {
    if (isHexadecimal(s)) {
        unsigned bits = static_cast<unsigned>(value);
        setBadFrom(s, std::sscanf(s.c_str(), "%x", &bits));
        value = static_cast<int>(bits);
    } else {
        setBadFrom(s, std::sscanf(s.c_str(), "%d", &value));
    }
}

void operator<<(long long& value, const psString& s) {
    if (isHexadecimal(s)) {
        auto bits = static_cast<unsigned long long>(value);
        setBadFrom(s, std::sscanf(s.c_str(), "%llx", &bits));
        value = static_cast<long long>(bits);
    } else {
        setBadFrom(s, std::sscanf(s.c_str(), "%lld", &value));
    }
}

void operator<<(unsigned long long& value, const psString& s) {
    auto number = static_cast<long long>(value);
    number << s;
    value = static_cast<unsigned long long>(number);
}

void operator<<(double& value, const psString& s) {
    const psPlainLocale plain;
    setBadFrom(s, std::sscanf(s.c_str(), "%lf", &value));
}

void operator<<(float& value, const psString& s) {
    double number = value;
    number << s;
    value = static_cast<float>(number);
}

void operator<<(bool& value, const psString& s) {
    const psString word = s.toLower().trimmed();
    const char first = word[0];
    value = first == 't' || first == 'y' || word == "1";
    const bool isFalse = first == 'f' || first == 'n' || word == "0";
    s.setBad(!value && !isFalse);
}

void operator<<(void*& value, const psString& s) {
    auto address = static_cast<long long>(reinterpret_cast<std::intptr_t>(value));
    address << s;
    value = reinterpret_cast<void*>(static_cast<std::intptr_t>(address));
}

// What a conversion left of s, and whether it overflowed.
static bool tookAll(const psString& s, const char* end) {
    return !s.empty() && end == s.c_str() + s.length() && errno == 0;
}

bool psIsNumber(const psString& s, long long) {
    char* end = nullptr;
    errno = 0;
    std::strtoll(s.c_str(), &end, isHexadecimal(s) ? 16 : 10);
    return tookAll(s, end);
}

bool psIsNumber(const psString& s, int) {
    long long value = 0;
    value << s;
    return psIsNumber(s, value) && value >= INT_MIN && value <= INT_MAX;
}

bool psIsNumber(const psString& s, double) {
    const psPlainLocale plain;
    char* end = nullptr;
    errno = 0;
    std::strtod(s.c_str(), &end);
    return tookAll(s, end);
}

// The data of a vector as text. Every piece of a type has the same width, so the text is written
// into its final place; appending piece by piece would copy megabytes over and over.
#include <cinttypes>
#include <climits>
#include <cstdio>

#include "kxelement.h"
#include "kxvector.h"
#include "psplainlocale.h"

namespace {

// The column of a component; complex elements are two of them as " (re,im)".
struct Column {
    const char* format;
    int width;
};

template <class T> constexpr Column columnOf{};
template <> constexpr Column columnOf<std::uint8_t>{"%4u", 4};
template <> constexpr Column columnOf<std::uint16_t>{"%6u", 6};
template <> constexpr Column columnOf<std::uint32_t>{"%11u", 11};
template <> constexpr Column columnOf<std::uint64_t>{"%24" PRIu64, 24};
template <> constexpr Column columnOf<std::int8_t>{"%5d", 5};
template <> constexpr Column columnOf<std::int16_t>{"%7d", 7};
template <> constexpr Column columnOf<std::int32_t>{"%12d", 12};
template <> constexpr Column columnOf<std::int64_t>{"%24" PRId64, 24};
template <> constexpr Column columnOf<float>{"%14.6g", 14};
template <> constexpr Column columnOf<double>{"%20.12g", 20};

// Writes component i and a zero byte; returns the end of the text.
template <class T> char* writeComponent(char* to, const void* data, int i) {
    constexpr Column column = columnOf<T>;
    const psPlainLocale plain;
    std::snprintf(to, static_cast<size_t>(column.width) + 1, column.format, kxLoad<T>(data, i));
    return to + column.width;
}

template <class T> void writeComplex(char* to, const void* data, int element) {
    *to++ = ' ';
    *to++ = '(';
    to = writeComponent<T>(to, data, 2 * element);
    *to++ = ',';
    to = writeComponent<T>(to, data, 2 * element + 1);
    *to = ')';
}

// len pieces of width characters, each written by write(buffer, element). Empty when the text
// would be too long for a string.
template <class Write> psString joined(int len, int width, Write&& write) {
    psString text;
    if (len > 0 && static_cast<long long>(len) * width < INT_MAX) {
        text.allocate(len * width);
    }
    for (int i = 0; i < text.length() / width; ++i) {
        write(&text.at(i * width), i);
    }
    return text;
}

} // namespace

psString kxVector::getDataString(kxType type, const void* data, int len) {
    psString text;
    kxForComponent(type, [&](auto zero) {
        using T = decltype(zero);
        constexpr int width = columnOf<T>.width;
        if (kxIsComplex(type)) {
            text =
                joined(len, 2 * width + 4, [&](char* to, int i) { writeComplex<T>(to, data, i); });
        } else {
            text = joined(len, width, [&](char* to, int i) { writeComponent<T>(to, data, i); });
        }
    });
    return text;
}

psString kxVector::getByteString(const void* data, int bytes) {
    constexpr int width = 3;
    return joined(bytes, width, [&](char* to, int i) {
        std::snprintf(to, width + 1, " %02X", static_cast<unsigned>(kxLoad<std::uint8_t>(data, i)));
    });
}

#pragma once

#include <cstdint>
#include <string>

namespace corpus {

// Numbers as bytes at the end of out, whatever the byte order of this machine; the bits above
// the width are dropped.
inline void append8(std::uint32_t value, std::string& out) {
    out.push_back(static_cast<char>(value & 0xFF));
}

inline void appendBig16(std::uint32_t value, std::string& out) {
    append8(value >> 8, out);
    append8(value, out);
}

inline void appendBig32(std::uint32_t value, std::string& out) {
    appendBig16(value >> 16, out);
    appendBig16(value, out);
}

inline void appendLittle16(std::uint32_t value, std::string& out) {
    append8(value, out);
    append8(value >> 8, out);
}

inline void appendLittle32(std::uint32_t value, std::string& out) {
    appendLittle16(value, out);
    appendLittle16(value >> 16, out);
}

} // namespace corpus

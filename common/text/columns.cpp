#include "columns.h"

#include <algorithm>

namespace common {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The bytes of so many characters from the start.
std::size_t bytesOf(const std::string& text, int columns) {
    std::size_t bytes = 0;
    while (bytes < text.size() && (columns > 0 || isContinuation(text[bytes]))) {
        columns -= !isContinuation(text[bytes++]);
    }
    return bytes;
}

} // namespace

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() || part.empty() ? "" : separator) + part;
    }
    return text;
}

int columnsOf(const std::string& text) {
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

std::string printable(const std::string& text) {
    std::string clean = text;
    std::replace_if(
        clean.begin(), clean.end(),
        [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7f'; }, '?');
    return clean;
}

std::string padded(const std::string& text, int columns, bool toTheRight) {
    const std::string blanks(static_cast<std::size_t>(std::max(0, columns - columnsOf(text))), ' ');
    return toTheRight ? blanks + text : text + blanks;
}

std::string shortened(const std::string& text, int columns) {
    const int all = columnsOf(text);
    if (all <= columns) {
        return text;
    }
    const int dots = std::min(3, columns);
    const int head = (columns - dots) / 2;
    const int tail = columns - dots - head;
    return text.substr(0, bytesOf(text, head)) + std::string(static_cast<std::size_t>(dots), '.') +
           text.substr(bytesOf(text, all - tail));
}

std::string cut(const std::string& text, int columns) {
    if (columnsOf(text) <= columns) {
        return text;
    }
    const int dots = std::min(3, columns);
    return text.substr(0, bytesOf(text, columns - dots)) +
           std::string(static_cast<std::size_t>(dots), '.');
}

std::string wrapped(const std::string& text, int columns, const std::string& indent) {
    const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
    std::string lines = text.substr(0, start);
    int used = columnsOf(lines);
    bool isFirst = true;
    for (std::size_t at = start; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        const bool isFull = columns > 0 && used + 1 + columnsOf(word) > columns;
        const std::string between = isFirst ? "" : isFull ? "\n" + indent : " ";
        lines += between + word;
        used =
            (isFull && !isFirst ? columnsOf(indent) : used + columnsOf(between)) + columnsOf(word);
        isFirst = false;
        at = end + 1;
    }
    return lines;
}

// Quoted where a shell would need it, so that the line can be repeated.
std::string keysText(const std::vector<std::string>& keys) {
    std::vector<std::string> words;
    for (const std::string& key : keys) {
        const bool isPlain = key.find_first_of(" \t\n;&|<>()$`\\\"'*?[]#~!{}") == std::string::npos;
        std::string quoted = "'";
        for (const char c : key) {
            quoted += c == '\'' ? "'\\''" : std::string(1, c);
        }
        words.push_back(isPlain ? key : quoted + "'");
    }
    return joined(words, " ");
}

} // namespace common

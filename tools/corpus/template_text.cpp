#include "template_text.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace corpus {

namespace {

bool isNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

std::string_view trimmedLeft(std::string_view line) {
    const auto start = line.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view{} : line.substr(start);
}

std::string_view takeLine(std::string_view& rest) {
    const auto end = rest.find('\n');
    const auto line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    return line;
}

std::vector<std::string> splitWords(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t at = 0; (at = text.find_first_not_of(" \n", at)) != std::string_view::npos;) {
        const auto end = std::min(text.find_first_of(" \n", at), text.size());
        words.emplace_back(text.substr(at, end - at));
        std::replace(words.back().begin(), words.back().end(), '+', ' ');
        at = end;
    }
    return words;
}

std::vector<std::string> splitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto line = trimmedLeft(takeLine(text));
        if (!line.empty()) {
            lines.emplace_back(line);
        }
    }
    return lines;
}

// Blocks keep their inner line ends but not the one before the separator, so that a template
// decides itself whether a line ends behind a block. A raw string starts with a line end.
std::vector<std::string> splitBlocks(std::string_view text) {
    std::vector<std::string> blocks;
    std::string block;
    if (!text.empty() && text.front() == '\n') {
        text.remove_prefix(1);
    }
    const auto flush = [&] {
        if (!block.empty()) {
            block.pop_back();
            blocks.push_back(block);
        }
        block.clear();
    };
    while (!text.empty()) {
        const auto line = takeLine(text);
        if (line == "%%") {
            flush();
        } else {
            block.append(line).push_back('\n');
        }
    }
    flush();
    return blocks;
}

// Reads what follows a "$" and removes it from rest.
Piece takeReference(std::string_view& rest) {
    Piece piece;
    if (!rest.empty() && rest[0] == '(') {
        const auto close = rest.find(')');
        if (close == std::string_view::npos) {
            throw std::logic_error("template reference without ')'");
        }
        std::string_view inside = rest.substr(1, close - 1);
        rest.remove_prefix(close + 1);
        auto colon = inside.find(':');
        piece.name = inside.substr(0, colon);
        while (colon != std::string_view::npos) {
            inside.remove_prefix(colon + 1);
            colon = inside.find(':');
            piece.forms.emplace_back(inside.substr(0, colon));
        }
        return piece;
    }
    const auto end = std::find_if_not(rest.begin(), rest.end(), isNameChar);
    const auto length = static_cast<std::size_t>(end - rest.begin());
    piece.name = rest.substr(0, length);
    rest.remove_prefix(length);
    return piece;
}

} // namespace

bool isOfWords(Split split) {
    return split == Split::Words || split == Split::OpenWords;
}

std::vector<std::string> splitAlternatives(Split split, std::string_view text) {
    switch (split) {
    case Split::Words:
    case Split::OpenWords: return splitWords(text);
    case Split::Lines: return splitLines(text);
    case Split::Blocks: break;
    }
    return splitBlocks(text);
}

std::vector<Piece> parseTemplate(std::string_view text) {
    std::vector<Piece> pieces;
    std::string literal;
    while (!text.empty()) {
        const auto dollar = std::min(text.find('$'), text.size());
        literal.append(text.substr(0, dollar));
        text.remove_prefix(dollar);
        if (text.empty()) {
            break;
        }
        text.remove_prefix(1);
        if (!text.empty() && text[0] == '$') {
            literal.push_back('$');
            text.remove_prefix(1);
            continue;
        }
        pieces.push_back({std::exchange(literal, {}), {}, {}});
        pieces.push_back(takeReference(text));
    }
    pieces.push_back({literal, {}, {}});
    return pieces;
}

} // namespace corpus

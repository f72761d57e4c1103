#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corpus {

// How the text of a rule falls into alternatives.
enum class Split {
    Words,     // at blanks and line ends; a "+" stands for a blank inside a word
    OpenWords, // the same, for a list that a text may enlarge with coined words
    Lines,     // one alternative per line; empty lines and leading blanks do not count
    Blocks,    // several lines each, parted by lines of "%%"
};

bool isOfWords(Split split);

std::vector<std::string> splitAlternatives(Split split, std::string_view text);

// A stretch of literal text, or a reference when the name is not empty.
struct Piece {
    std::string literal;
    std::string name;
    std::vector<std::string> forms;
};

// Reads a template: "$name", "$(name)", "$(name:form:form)", and "$$" for a dollar sign. A "$("
// without its ")" is a fault of the template and throws std::logic_error.
std::vector<Piece> parseTemplate(std::string_view text);

} // namespace corpus

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corpus {

// What makes a file of words as hard to compress as its namesake; found by ntkcorpusfit.
struct Recipe {
    int letterTilt; // of Zipf's law by which the successor of a letter is chosen
    int wordLength; // a word of rank r has up to 1 + wordLength/10 * log2(2r) letters
    int words;      // in the vocabulary
    int wordTilt;   // of Zipf's law by which a word is chosen
    int successors; // per mille of the chosen words that are a usual successor of the last one
    int repeats;    // per mille: an earlier run of words is repeated instead of a word chosen
    int runWords;   // the longest repeated run
    int reachWords; // the largest distance of a repeated run
    int marks;      // per mille of the chosen words that have one
    int lineEnds;   // per mille of the chosen words that end a line
};

struct FileKind {
    std::string_view name;
    std::size_t sizeBytes; // that of the file it stands in for
    std::string (*maker)(const FileKind&);
    Recipe recipe;

    std::string make() const { return maker(*this); } // the same bytes on every machine
};

// The fourteen files of the corpus in the order in which the benchmarks take them.
std::span<const FileKind> catalog();

std::string makeText(const FileKind& kind);
std::string makeBinary(const FileKind& kind);
std::string makePage(const FileKind& kind);
std::string makeTraces(const FileKind& kind);

} // namespace corpus

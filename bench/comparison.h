// A comparison: what it is called, what it is given, and how it reports.
//
// It is named after the family of functions as in ntk/dc, and lies in the file of that name.
#pragma once

#include <optional>

#include "side_by_side.h"

using Bytes = std::vector<Ntk8u>;

// A line of the report; the clocks are per byte.
struct Row {
    std::string call;
    std::size_t bytes; // that a call works on, uncompressed
    double clocks;
    std::string against;
    double otherClocks;
    Ratio ratio;
    std::optional<double> sizeRatio = {}; // of the streams that two encoders make
};

// One run of a comparison, on one file where it takes files.
struct Run {
    int rounds;
    bool asMarkdown;
    std::string dataName; // as the rows show it
    std::string path = {};
    Bytes data = {}; // of the file

    // Measures the first variant against each of the others and prints a row for each pair.
    void sideBySide(const std::string& call, std::size_t bytes,
                    const std::vector<Variant>& variants) const;
    // The same for decoders of all the data into `decoded`; throws when one does not restore them.
    void decodersSideBySide(const std::string& call, Bytes& decoded,
                            const std::vector<Variant>& variants) const;
    void print(const Row& row) const;
};
void printTitle(bool asMarkdown);

struct Comparison {
    const char* name;
    const char* summary;            // one line
    std::vector<const char*> files; // of the corpus, when none is given; none: it takes no files
    std::size_t mostBytes;          // taken of a file
    int rounds;                     // unless others are asked for
    void (*run)(Run& run);
};
extern const Comparison bwtComparison, bz2Comparison, bz2stagesComparison, checksumComparison,
    deflateComparison, handloopComparison, inflateComparison, lz4Comparison, lzoComparison,
    lzssComparison, zfpComparison;

// Both throw a std::runtime_error that says what is wrong: a figure would mean nothing.
void must(int status); // of a call of the library
void mustEqual(const Bytes& decoded, const Bytes& expected);

// A block of the size that one of the library's GetSize functions tells.
template <class GetSize, class... Arguments> Bytes sized(GetSize getSize, Arguments... arguments) {
    int size = 0;
    must(getSize(arguments..., &size));
    return Bytes(static_cast<std::size_t>(size));
}

inline char* chars(Bytes& bytes) {
    return reinterpret_cast<char*>(bytes.data());
}

inline int lengthOf(const Bytes& bytes) {
    return static_cast<int>(bytes.size());
}

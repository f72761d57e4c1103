#include "functions.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "variants.h"

namespace report {

namespace {

// The first that the name contains counts, so what belongs to bzip2 by its last word comes late:
// ntksCRC32_BZ2_8u is a checksum.
struct Family {
    const char* part;
    const char* family;
};
constexpr Family families[] = {{"Adler", "Checksum"},
                               {"CRC", "Checksum"},
                               {"LZ4", "LZ4"},
                               {"LZO", "LZO"},
                               {"LZSS", "LZSS"},
                               {"Zfp", "ZFP"},
                               {"Deflate", "Deflate"},
                               {"Inflate", "Deflate"},
                               {"BZ2", "BZ2"},
                               {"BWT", "BZ2"},
                               {"MTF", "BZ2"},
                               {"ReduceDictionary", "BZ2"},
                               {"ExpandDictionary", "BZ2"}};

constexpr const char* encoding[] = {"Encode", "Compress", "Deflate", "Reduce", "Fwd"};
constexpr const char* decoding[] = {"Decode", "Decompress", "Inflate", "Expand", "Inv"};

constexpr const char* measuredLibrary = "ntks";

bool contains(const std::string& name, const char* part) {
    return name.find(part) != std::string::npos;
}

template <class Parts> bool containsOne(const std::string& name, const Parts& parts) {
    return std::any_of(std::begin(parts), std::end(parts),
                       [&](const char* part) { return contains(name, part); });
}

// Of another library: the name without prefix, verb and types.
std::string genericFamily(const std::string& function) {
    const auto isLower = [](unsigned char c) { return std::islower(c) != 0; };
    const auto start = std::find_if_not(function.begin(), function.end(), isLower);
    std::string name(start == function.end() ? function.begin() : start, function.end());
    name = name.substr(0, name.find('_'));
    for (const auto& verbs : {encoding, decoding}) {
        for (int i = 0; i < 3; ++i) {
            if (const std::string verb = verbs[i]; name.starts_with(verb) && name != verb) {
                name.erase(0, verb.size());
            }
        }
    }
    return name.empty() ? function : name;
}

} // namespace

FunctionFacts factsOf(const std::string& function) {
    const auto* const found =
        std::find_if(std::begin(families), std::end(families),
                     [&](const Family& family) { return contains(function, family.part); });
    const bool isKnown = function.starts_with(measuredLibrary) && found != std::end(families);
    const Case::Kind kind = containsOne(function, decoding)   ? Case::Kind::decoder
                            : containsOne(function, encoding) ? Case::Kind::encoder
                                                              : Case::Kind::other;
    return {isKnown ? found->family : genericFamily(function), kind};
}

std::optional<double> bytesPerUnit(const Case& one) {
    if (!one.function.starts_with(measuredLibrary)) {
        // Those of a decoder may be the compressed ones.
        const bool isByte = one.unit == "byte" && one.kind != Case::Kind::decoder;
        return isByte ? std::optional(1.0) : std::nullopt;
    }
    // These count compressed bytes.
    if (one.function == "ntksDecodeLZ4_8u" || one.function == "ntksDecodeZfp444_32f") {
        return one.ratio && *one.ratio > 0 ? one.ratio : std::nullopt;
    }
    return one.function == "ntksEncodeZfp444_32f" ? sizeof(float) : 1;
}

std::optional<double> ratioOfCall(const Case& one, std::optional<double> told) {
    if (!told || !encodesSecondHalf(one)) {
        return told;
    }
    if (!one.length || *one.length < 2) {
        return std::nullopt;
    }
    return *told * std::floor(*one.length / 2) / *one.length;
}

} // namespace report

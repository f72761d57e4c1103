#include "pscpufeatures.h"

#include <iterator>
#include <memory>

namespace {

// Descriptions begin with "Technology" where no kernel could be written with the instructions.
// Those of longer labels, which the list prints without a blank in between, stand in parentheses.
// There are no rows for builds of the library for certain processors: it has one build, in which
// each function picks its kernel by the features that the kernel needs.
constexpr psCpuFeature cpuFeatureArray[] = {
    {"MMX", 0x1, "64-bit integer vectors"},
    {"SSE", 0x3, "Streaming SIMD Extensions"},
    {"SSE2", 0x7, "Streaming SIMD Extensions 2"},
    {"SSE3", 0xf, "Streaming SIMD Extensions 3"},
    {"SSSE3", 0x1f, "Supplemental Streaming SIMD Extensions 3"},
    {"MOVBE", 0x3f, "Move with byte swap"},
    {"SSE41", 0x5f, "Streaming SIMD Extensions 4.1"},
    {"SSE42", 0xdf, "Streaming SIMD Extensions 4.2"},
    {"AVX", 0x1df, "Advanced Vector Extensions"},
    {"AES", 0x400, "AES rounds"},
    {"CLMUL", 0x800, "Carry-less multiplication"},
    {"RDRAND", 0x2000, "Technology: random numbers from the processor"},
    {"F16C", 0x4000, "Conversion of half-precision numbers"},
    {"AVX2", 0x81df, "Advanced Vector Extensions 2"},
    {"ADCOX", 0x10000, "Addition with two carry chains"},
    {"RDSEED", 0x20000, "Technology: random seeds from the processor"},
    {"PREFETCHW", 0x40000, "Technology: prefetch for writing"},
    {"SHA", 0x80000, "SHA rounds"},
    {"AVX512F", 0x100000, "Foundation of 512-bit vectors"},
    {"AVX512CD", 0x200000, "Conflict detection in 512-bit vectors"},
    {"AVX512ER", 0x400000, "Exponential and reciprocal of 512-bit vectors"},
    {"AVX512PF", 0x800000, "Prefetch for 512-bit vectors"},
    {"AVX512BW", 0x1000000, "Bytes and words in 512-bit vectors"},
    {"AVX512DQ", 0x2000000, "Double and quad words in 512-bit vectors"},
    {"AVX512VL", 0x4000000, "Instructions of 512-bit vectors for shorter ones"},
    {"AVX512VBMI", 0x8000000, "(byte permutation in 512-bit vectors)"},
    {"MPX", 0x10000000, "Technology: memory protection by bounds registers"},
    {"AVX512_4FMADDPS", 0x20000000, "(four multiply-adds of 512-bit vectors)"},
    {"AVX512_4VNNIW", 0x40000000, "(four word dot products of 512-bit vectors)"},
    {"AVX512IFMA", 0x100000000, "(multiply-add of 52-bit integers in 512-bit vectors)"},
    {"KNC", 0x80000000, "Technology: many-core coprocessor"},
    {"AVX512VPOPCNTDQ", 0x400000000, "(population count in 512-bit vectors)"},
    {"AVX512_BITALG", 0x800000000, "(bit algorithms in 512-bit vectors)"},
    {"AVX512_FP16", 0x1000000000, "(half precision in 512-bit vectors)"},
    {"AVX_VNNI", 0x2000000000, "Dot products of bytes and words"},
    {"AVX_VNNI_INT8", 0x4000000000, "(dot products of bytes with any signs)"},
    {"AVX_VNNI_INT16", 0x8000000000, "(dot products of words with any signs)"},
    {"AVX10_256", 0x10000000000, "(converged vector instructions, 256 bits)"},
    {"AVX10_512", 0x20000000000, "(converged vector instructions, 512 bits)"},
};

constexpr int labelWidth = 9;

const psCpuFeature* findMask(unsigned long long mask) {
    for (const psCpuFeature& row : cpuFeatureArray) {
        if (row.mask == mask) {
            return &row;
        }
    }
    return nullptr;
}

unsigned long long maskOf(const psString& label) {
    for (const psCpuFeature& row : cpuFeatureArray) {
        if (label == row.label) {
            return row.mask;
        }
    }
    return 0;
}

} // namespace

const psCpuFeature* psCpuFeatures::begin() {
    return std::begin(cpuFeatureArray);
}
const psCpuFeature* psCpuFeatures::end() {
    return std::end(cpuFeatureArray);
}

unsigned long long psCpuFeatures::cpuFeatures(const psString& list) {
    int count = 0;
    split(nullptr, list, ',', count);
    const auto labels = std::make_unique<psString[]>(static_cast<size_t>(count));
    split(labels.get(), list, ',', count);
    unsigned long long mask = 0;
    for (int i = 0; i < count; ++i) {
        mask |= maskOf(labels[static_cast<size_t>(i)]);
    }
    return mask;
}

psString psCpuFeatures::cpuLabel(unsigned long long mask) {
    const psCpuFeature* const row = findMask(mask);
    return row ? row->label : "Undefined";
}

psString psCpuFeatures::cpuName(unsigned long long mask) {
    const psCpuFeature* const row = findMask(mask);
    return row ? row->description : "Unknown processor";
}

psString psCpuFeatures::optimizedList() {
    psString text;
    for (const psCpuFeature& row : cpuFeatureArray) {
        const psString description = row.description;
        if (!description.startsWith("Techno")) {
            text << psFormat("%-*s", labelWidth, row.label) << description << "\n";
        }
    }
    return text;
}

void psCpuFeatures::split(psString* pieces, const psString& in, char sep, int& count) {
    const psString separator(sep);
    count = 0;
    int start = 0;
    for (bool more = true; more; ++count) {
        const int at = in.find(separator, start);
        more = at != psString::npos;
        if (pieces) {
            pieces[count] = more ? in.substr(start, at - start) : in.substr(start);
        }
        start = at + 1;
    }
}

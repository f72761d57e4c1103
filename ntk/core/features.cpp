#include "features.h"

namespace ntk {

namespace {

// States in XCR0 that must all be saved for the registers to be usable: SSE and the upper halves of
// the 256-bit registers; in addition the mask registers and both parts of the 512-bit registers;
// the two bound-register states.
constexpr Ntk64u avxStates = 0x06;
constexpr Ntk64u avx512States = 0xe6;
constexpr Ntk64u mpxStates = 0x18;

struct FeatureBit {
    Ntk64u feature;
    Ntk32u leaf;
    Ntk32u subleaf;
    Ntk32u Registers::*word;
    int index;
    Ntk64u states;
};

constexpr auto eax = &Registers::eax;
constexpr auto ebx = &Registers::ebx;
constexpr auto ecx = &Registers::ecx;
constexpr auto edx = &Registers::edx;

constexpr FeatureBit featureBits[] = {
    {NTK_CPU_MMX, 1, 0, edx, 23, 0},
    {NTK_CPU_SSE, 1, 0, edx, 25, 0},
    {NTK_CPU_SSE2, 1, 0, edx, 26, 0},
    {NTK_CPU_SSE3, 1, 0, ecx, 0, 0},
    {NTK_CPU_CLMUL, 1, 0, ecx, 1, 0},
    {NTK_CPU_SSSE3, 1, 0, ecx, 9, 0},
    {NTK_CPU_SSE41, 1, 0, ecx, 19, 0},
    {NTK_CPU_SSE42, 1, 0, ecx, 20, 0},
    {NTK_CPU_MOVBE, 1, 0, ecx, 22, 0},
    {NTK_CPU_AES, 1, 0, ecx, 25, 0},
    {NTK_CPU_AVX, 1, 0, ecx, 28, avxStates},
    {NTK_CPU_AVX_OS, 1, 0, ecx, 28, avxStates},
    {NTK_CPU_F16C, 1, 0, ecx, 29, avxStates},
    {NTK_CPU_RDRAND, 1, 0, ecx, 30, 0},
    {NTK_CPU_AVX2, 7, 0, ebx, 5, avxStates},
    {NTK_CPU_MPX, 7, 0, ebx, 14, mpxStates},
    {NTK_CPU_AVX512F, 7, 0, ebx, 16, avx512States},
    {NTK_CPU_AVX512DQ, 7, 0, ebx, 17, avx512States},
    {NTK_CPU_RDSEED, 7, 0, ebx, 18, 0},
    {NTK_CPU_ADCOX, 7, 0, ebx, 19, 0},
    {NTK_CPU_AVX512IFMA, 7, 0, ebx, 21, avx512States},
    {NTK_CPU_AVX512PF, 7, 0, ebx, 26, avx512States},
    {NTK_CPU_AVX512ER, 7, 0, ebx, 27, avx512States},
    {NTK_CPU_AVX512CD, 7, 0, ebx, 28, avx512States},
    {NTK_CPU_SHA, 7, 0, ebx, 29, 0},
    {NTK_CPU_AVX512BW, 7, 0, ebx, 30, avx512States},
    {NTK_CPU_AVX512VL, 7, 0, ebx, 31, avx512States},
    {NTK_CPU_AVX512VBMI, 7, 0, ecx, 1, avx512States},
    {NTK_CPU_AVX512_BITALG, 7, 0, ecx, 12, avx512States},
    {NTK_CPU_AVX512VPOPCNTDQ, 7, 0, ecx, 14, avx512States},
    {NTK_CPU_AVX512_4VNNIW, 7, 0, edx, 2, avx512States},
    {NTK_CPU_AVX512_4FMADDPS, 7, 0, edx, 3, avx512States},
    {NTK_CPU_AVX512_FP16, 7, 0, edx, 23, avx512States},
    {NTK_CPU_AVX_VNNI, 7, 1, eax, 4, avxStates},
    {NTK_CPU_AVX_VNNI_INT8, 7, 1, edx, 4, avxStates},
    {NTK_CPU_AVX_VNNI_INT16, 7, 1, edx, 10, avxStates},
    {NTK_CPU_PREFETCHW, 0x80000001U, 0, ecx, 8, 0},
    {NTK_CPU_AVX10_256, 0x24, 0, ebx, 17, avx512States},
    {NTK_CPU_AVX10_512, 0x24, 0, ebx, 18, avx512States},
};

// The saved states; none if the operating system does not let programs read them.
Ntk64u savedStatesOf(const Processor& processor) {
    constexpr int osxsave = 27;
    return bit(leafOrZero(processor, 1, 0).ecx, osxsave) ? processor.savedStates() : 0;
}

// EAX of subleaf 0 of leaf 7 is the number of its last subleaf. For those above it a hypervisor may
// return the data of subleaf 0, whose bits mean something else.
Registers featureLeaf(const Processor& processor, Ntk32u leaf, Ntk32u subleaf) {
    const bool exists = subleaf == 0 || subleaf <= leafOrZero(processor, leaf, 0).eax;
    return exists ? leafOrZero(processor, leaf, subleaf) : Registers{};
}

} // namespace

Ntk64u featuresOf(const Processor& processor) {
    const Ntk64u saved = savedStatesOf(processor);
    Ntk64u features = 0;
    Registers r{};
    const FeatureBit* previous = nullptr;
    for (const FeatureBit& f : featureBits) {
        // CPUID can take microseconds under a hypervisor: once per leaf, not per bit.
        if (previous == nullptr || f.leaf != previous->leaf || f.subleaf != previous->subleaf) {
            r = featureLeaf(processor, f.leaf, f.subleaf);
        }
        if (bit(r.*f.word, f.index) && (saved & f.states) == f.states) {
            features |= f.feature;
        }
        previous = &f;
    }
    return features;
}

} // namespace ntk

// The feature mask of recorded registers, and that of this machine compared with the compiler's
// view.
#include "core/features.h"

#include <cpuid.h>

#include <gtest/gtest.h>

#include <cstring>

#include "kernels.h"

namespace {

constexpr Ntk64u sse42Row = 0xdf;
constexpr Ntk64u avx2Row = 0x81df;
constexpr Ntk64u avxBits =
    NTK_CPU_AVX | NTK_CPU_AVX_OS | NTK_CPU_AVX2 | NTK_CPU_F16C | NTK_CPU_AVX_VNNI;
constexpr Ntk64u avx512Bits = NTK_CPU_AVX512F | NTK_CPU_AVX512CD | NTK_CPU_AVX512BW |
                              NTK_CPU_AVX512DQ | NTK_CPU_AVX512VL | NTK_CPU_AVX512VBMI |
                              NTK_CPU_AVX512IFMA | NTK_CPU_AVX512VPOPCNTDQ | NTK_CPU_AVX512_BITALG |
                              NTK_CPU_AVX512_FP16;
constexpr Ntk64u otherBits = sse42Row | NTK_CPU_MOVBE | NTK_CPU_AES | NTK_CPU_CLMUL |
                             NTK_CPU_RDRAND | NTK_CPU_ADCOX | NTK_CPU_RDSEED | NTK_CPU_PREFETCHW |
                             NTK_CPU_SHA;

struct Machine {
    const char* name;
    Ntk32u maxLeaf;
    Ntk32u leaf1Ecx;
    Ntk64u savedStates;
    Ntk64u features;
    Ntk32u lastSubleaf = 2;
};

constexpr Ntk32u recordedEcx = 0xfffa3203;
constexpr Ntk32u osxsaveBit = 1U << 27;

// A recorded server processor, under operating systems that save more or fewer states.
const Machine machines[] = {
    {"all states", 0x1c, recordedEcx, 0xe7, otherBits | avxBits | avx512Bits},
    {"no 512-bit states", 0x1c, recordedEcx, 0x07, otherBits | avxBits},
    {"masks but not all 512-bit registers", 0x1c, recordedEcx, 0x67, otherBits | avxBits},
    {"no 256-bit state", 0x1c, recordedEcx, 0x03, otherBits},
    {"states not readable", 0x1c, recordedEcx & ~osxsaveBit, 0xe7, otherBits},
    {"no leaf 7", 1, recordedEcx, 0xe7,
     (otherBits & ~(NTK_CPU_ADCOX | NTK_CPU_RDSEED | NTK_CPU_SHA)) | NTK_CPU_AVX | NTK_CPU_AVX_OS |
         NTK_CPU_F16C},
    {"subleaf 0 for every subleaf", 0x1c, recordedEcx, 0xe7,
     (otherBits | avxBits | avx512Bits) & ~NTK_CPU_AVX_VNNI, 0},
};

const Machine* s_machine = nullptr;

ntk::Registers recorded(Ntk32u leaf, Ntk32u subleaf) {
    switch (leaf) {
    case 0: return {s_machine->maxLeaf, 0, 0, 0};
    case 1: return {0x000c06f2, 0x00020800, s_machine->leaf1Ecx, 0x1f8bfbff};
    case 7:
        return subleaf == 0 || s_machine->lastSubleaf == 0
                   ? ntk::Registers{s_machine->lastSubleaf, 0xf1bf2ffb, 0x1a415f46, 0x20814010}
                   : ntk::Registers{0x00001c30, 0, 0, 0};
    case 0x80000000: return {0x80000021, 0, 0, 0};
    case 0x80000001: return {0, 0, 0x00000121, 0x2c100800};
    default: return {};
    }
}

Ntk64u recordedStates() {
    return s_machine->savedStates;
}

TEST(Features, NeedTheProcessorAndTheOperatingSystem) {
    for (const Machine& machine : machines) {
        s_machine = &machine;
        EXPECT_EQ(ntk::featuresOf({recorded, recordedStates}), machine.features) << machine.name;
    }
}

// Only the bits that the recorded processor lacks.
ntk::Registers rare(Ntk32u leaf, Ntk32u subleaf) {
    switch (leaf) {
    case 1: return {0, 0, osxsaveBit, 0};
    case 7:
        return subleaf == 0 ? ntk::Registers{1, 1U << 14 | bit_AVX512PF | bit_AVX512ER, 0,
                                             bit_AVX5124VNNIW | bit_AVX5124FMAPS}
                            : ntk::Registers{0, 0, 0, 1U << 4 | 1U << 10};
    default: return {0x24, 3U << 17, 0, 0};
    }
}

TEST(Features, RareOnesAreReadFromTheirBits) {
    EXPECT_EQ(ntk::featuresOf({rare, [] { return Ntk64u{0xff}; }}),
              NTK_CPU_MPX | NTK_CPU_AVX512PF | NTK_CPU_AVX512ER | NTK_CPU_AVX512_4VNNIW |
                  NTK_CPU_AVX512_4FMADDPS | NTK_CPU_AVX_VNNI_INT8 | NTK_CPU_AVX_VNNI_INT16 |
                  NTK_CPU_AVX10_256 | NTK_CPU_AVX10_512);
}

TEST(Features, OfThisMachineAgreeWithTheCompilersView) {
    const Ntk64u features = machineFeatures();
    __builtin_cpu_init();
    EXPECT_EQ((features & sse42Row) == sse42Row, __builtin_cpu_supports("sse4.2") != 0);
    EXPECT_EQ((features & avx2Row) == avx2Row, __builtin_cpu_supports("avx2") != 0);
    EXPECT_EQ((features & NTK_CPU_CLMUL) != 0, __builtin_cpu_supports("pclmul") != 0);
    EXPECT_EQ((features & NTK_CPU_AVX512BW) != 0, __builtin_cpu_supports("avx512bw") != 0);
    EXPECT_EQ((features & NTK_CPU_AVX512_BITALG) != 0, __builtin_cpu_supports("avx512bitalg") != 0);
}

TEST(Features, RegistersComeWithTheMaskUnlessTheMarkerIsThere) {
    const Ntk64u all = machineFeatures();

    Ntk64u mask = 0;
    Ntk32u vendor[4] = {0, 99, 0, 99};
    EXPECT_EQ(ntkGetCpuFeatures(&mask, vendor), ntkStsNoErr);
    EXPECT_EQ(mask, all);
    const ntk::Registers direct = ntk::thisProcessor.identify(0, 0);
    EXPECT_EQ(vendor[0], direct.eax);
    EXPECT_EQ(vendor[1], direct.ebx);
    EXPECT_EQ(vendor[2], direct.ecx);
    EXPECT_EQ(vendor[3], direct.edx);

    Ntk64u marker = 0;
    std::memcpy(&marker, NTK_GET_INFO_MARKER, sizeof marker);
    const Ntk64u markerBefore = marker;
    Ntk32u subleaf1[4] = {7, 0, 1, 0};
    EXPECT_EQ(ntkGetCpuFeatures(&marker, subleaf1), ntkStsNoErr);
    EXPECT_EQ(marker, markerBefore);
    EXPECT_EQ(subleaf1[0], ntk::thisProcessor.identify(7, 1).eax);

    EXPECT_EQ(ntkGetCpuFeatures(&marker, nullptr), ntkStsNoErr);
    EXPECT_EQ(marker, all);

    Ntk32u untouched[4] = {0, 1, 2, 3};
    EXPECT_EQ(ntkGetCpuFeatures(nullptr, untouched), ntkStsNullPtr);
    EXPECT_EQ(untouched[1], 1U);
}

TEST(Features, EnabledAreThoseAskedForThatTheMachineHas) {
    const Ntk64u all = machineFeatures();
    EXPECT_EQ(ntkGetEnabledCpuFeatures(), all) << "before any choice";

    EXPECT_EQ(ntkSetCpuFeatures(NTK_CPU_SSE2), ntkStsNoErr);
    EXPECT_EQ(ntkGetEnabledCpuFeatures(), NTK_CPU_SSE2);
    constexpr Ntk64u nobodyHas = 1ULL << 31;
    EXPECT_EQ(ntkSetCpuFeatures(NTK_CPU_SSE | nobodyHas), ntkStsFeaturesUnavailable);
    EXPECT_EQ(ntkGetEnabledCpuFeatures(), NTK_CPU_SSE);
    EXPECT_EQ(ntkSetCpuFeatures(0), ntkStsNoErr);
    EXPECT_EQ(ntkGetEnabledCpuFeatures(), 0U);
    EXPECT_EQ(ntkInit(), ntkStsNoErr);
    EXPECT_EQ(ntkGetEnabledCpuFeatures(), all);
}

} // namespace

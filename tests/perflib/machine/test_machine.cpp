#include <cpuid.h>
#include <sched.h>
#include <sys/utsname.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <ntkcore.h>

#include <gtest/gtest.h>

#include "pscpucache.h"
#include "pscpufeatures.h"
#include "psinfo.h"
#include "replay.h"

namespace {

// Leaf 4 of a cache: kind 0 to 31, ways, partitions, bytes per line, sets.
Registers cache(unsigned kind, unsigned ways, unsigned partitions, unsigned line, unsigned sets) {
    return {kind, (ways - 1) << 22 | (partitions - 1) << 12 | (line - 1), sets - 1, 0};
}

int noCacheSize(int*) {
    return ntkStsNoProcessorInfo;
}

} // namespace

TEST(CpuFeatures, ListBecomesAMask) {
    const std::pair<const char*, unsigned long long> cases[] = {{"SSE2,AVX2", 0x81df},
                                                                {"AVX,,FOO", 0x1df},
                                                                {"", 0},
                                                                {"AVX2 ", 0},
                                                                {"AVX10_512,MMX,", 0x20000000001},
                                                                {"AVX512IFMA", 0x100000000}};
    for (const auto& [list, mask] : cases)
        EXPECT_EQ(psCpuFeatures::cpuFeatures(list), mask) << list;
}

TEST(CpuFeatures, MaskHasOneLabelAndName) {
    EXPECT_STREQ(psCpuFeatures::cpuLabel(0x81df).c_str(), "AVX2");
    EXPECT_STREQ(psCpuFeatures::cpuLabel(0x20000000000).c_str(), "AVX10_512");
    EXPECT_STREQ(psCpuFeatures::cpuName(0x7).c_str(), "Streaming SIMD Extensions 2");
    for (const unsigned long long mask : {0x81deULL, 0ULL, 0x200ULL}) {
        EXPECT_STREQ(psCpuFeatures::cpuLabel(mask).c_str(), "Undefined");
        EXPECT_STREQ(psCpuFeatures::cpuName(mask).c_str(), "Unknown processor");
    }
    int rows = 0;
    for (const psCpuFeature& row : psCpuFeatures()) {
        ++rows;
        EXPECT_STREQ(psCpuFeatures::cpuLabel(row.mask).c_str(), row.label);
        EXPECT_EQ(psCpuFeatures::cpuFeatures(row.label), row.mask);
    }
    EXPECT_EQ(rows, 39);
}

// The single bits of the table are those that the library reports.
TEST(CpuFeatures, MasksAgreeWithTheLibrary) {
    const std::pair<const char*, unsigned long long> cases[] = {
        {"SSE42", NTK_CPU_SSE42},
        {"AVX512IFMA", NTK_CPU_AVX512IFMA},
        {"AVX_VNNI_INT16", NTK_CPU_AVX_VNNI_INT16}};
    for (const auto& [label, bit] : cases)
        EXPECT_EQ(psCpuFeatures::cpuFeatures(label) & bit, bit) << label;
}

TEST(Processor, SavedStatesAreTheSystems) {
    constexpr unsigned x87AndSse = 3; // saved by every system that enables XGETBV
    EXPECT_EQ(psSavedStates() & x87AndSse, x87AndSse);
    constexpr unsigned allButOsxsave = ~(1U << 27);
    g_answers = {{{0, 0}, {1, 0, 0, 0}}, {{1, 0}, {1, 0, allButOsxsave, ~0U}}};
    EXPECT_EQ(psSavedStates(replay), 0U);
}

TEST(Cpuid, LeavesBeyondTheLargestAreNotAsked) {
    g_answers = {{{0, 0}, {2, 0, 0, 0}},          {{2, 0}, {1, 1, 1, 1}},
                 {{3, 0}, {1, 1, 1, 1}},          {{0x80000000, 0}, {0x80000001, 0, 0, 0}},
                 {{0x80000001, 0}, {1, 1, 1, 1}}, {{0x80000002, 0}, {1, 1, 1, 1}}};
    for (const auto& [leaf, asked] :
         std::map<unsigned, bool>{{2, true}, {3, false}, {0x80000001, true}, {0x80000002, false}}) {
        const CPUID answer(leaf, 0, replay);
        EXPECT_EQ(answer.hasData(), asked) << std::hex << leaf;
        EXPECT_EQ(answer.get(CPUID::EDX), asked ? 1u : 0u) << std::hex << leaf;
    }
    g_answers[{0x80000000, 0}] = {0x543, 0, 0, 0}; // without extended leaves: some other answer
    EXPECT_FALSE(CPUID(0x80000001, 0, replay).hasData());
}

TEST(Cpuid, LibraryAnswersAsTheInstruction) {
    for (const unsigned leaf : {0u, 1u, 0x80000000u, 0x80000001u}) {
        Registers expected;
        __cpuid_count(leaf, 0, expected[0], expected[1], expected[2], expected[3]);
        const CPUID answer(leaf);
        ASSERT_TRUE(answer.hasData());
        EXPECT_EQ(answer.get(CPUID::EAX), expected[0]) << leaf;
        EXPECT_EQ(answer.get(CPUID::EDX), expected[3]) << leaf;
    }
}

TEST(CacheSize, LargestOfThoseListed) {
    const Registers small = cache(1, 8, 1, 64, 64), large = cache(3, 16, 1, 64, 1024);
    const struct {
        const char* what;
        unsigned largestLeaf;
        std::vector<Registers> caches, extended;
        int bytes;
        bool hasExtensions = true;
    } cases[] = {
        {"the last largest", 4, {small, large, cache(3, 11, 1, 64, 32768)}, {}, 11 * 64 * 32768},
        {"the first largest", 0x16, {cache(3, 1, 1024, 64, 8), small}, {}, 524288},
        {"ended by kind 0", 4, {small, {}, large}, {}, 32768},
        {"product beyond int", 4, {small, cache(3, 1024, 1024, 64, 64)}, {}, 32768},
        {"sets beyond int", 4, {small, cache(3, 1, 1, 1, 0)}, {}, 32768},
        {"no leaf 4", 2, {small}, {small}, 0},
        {"nothing listed", 4, {}, {}, 0},
        {"leaf 4 first", 4, {small}, {large}, 32768},
        {"leaf 4 empty", 4, {}, {small, large}, 1048576},
        {"extended leaf not defined", 4, {}, {large}, 0, false},
        {"subleaves not told apart", 4, std::vector<Registers>(100, small), {}, 32768},
    };
    for (const auto& c : cases) {
        g_answers = {{{0, 0}, {c.largestLeaf, 0, 0, 0}},
                     {{0x80000000, 0}, {0x8000001e, 0, 0, 0}},
                     {{0x80000001, 0}, {0, 0, c.hasExtensions ? topologyExtensions : 0, 0}}};
        addSubleaves(4, c.caches);
        addSubleaves(0x8000001d, c.extended);
        EXPECT_EQ(psMaxCacheSizeB(noCacheSize, replay), c.bytes) << c.what;
    }
    EXPECT_EQ(psCpuCaches(replay).count(), 1) << "listed again and again";
}

TEST(CacheSize, LibraryIsAskedFirst) {
    g_answers = {{{0, 0}, {4, 0, 0, 0}}, {{4, 0}, cache(1, 8, 1, 64, 64)}};
    EXPECT_EQ(psMaxCacheSizeB([](int* bytes) { return *bytes = 5000, 0; }, replay), 5000);
    EXPECT_EQ(psMaxCacheSizeB([](int* bytes) { return *bytes = 5000, 1; }, replay), 32768);
    EXPECT_EQ(psMaxCacheSizeB([](int* bytes) { return *bytes = 0; }, replay), 32768);
    int bytes = 0;
    ntkGetMaxCacheSizeB(&bytes);
    EXPECT_EQ(psGetMaxCacheSizeB(), bytes);
}

TEST(Brand, IsCleanedOfBlanks) {
    const char brand[49] = "   Some  Processor   (R) 1234 v2 \0 @ 2.00GHz  ";
    g_answers = {{{0x80000000, 0}, {0x80000004, 0, 0, 0}}};
    for (unsigned i = 0; i < 3; ++i)
        std::memcpy(g_answers[{0x80000002 + i, 0}].data(), brand + 16 * i, 16);
    EXPECT_STREQ(psCpuBrand(replay).c_str(), "Some Processor (R) 1234 v2 @ 2.00GHz");
    g_answers.clear();
    EXPECT_STREQ(psCpuBrand(replay).c_str(), "");
}

TEST(Host, NamesComeFromTheSystem) {
    utsname names;
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(psOS().c_str(),
              std::string(names.sysname) + " (" + names.release + ", " + names.version + ")");
    EXPECT_STREQ(psHost().c_str(), names.nodename);
    EXPECT_GE(psGetNumOfProcessors(), 1);
}

// Two threads that spin on one processor take it from each other sooner or later.
TEST(Switches, AreCountedWhenTheProcessorIsTakenAway) {
    cpu_set_t before;
    ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
    cpu_set_t here;
    CPU_ZERO(&here);
    CPU_SET(static_cast<unsigned>(sched_getcpu()), &here);
    ASSERT_EQ(sched_setaffinity(0, sizeof here, &here), 0);
    std::atomic<bool> done = false;
    std::thread other([&done] {
        while (!done) {
        }
    });
    const long switches = psInvoluntarySwitches();
    while (psInvoluntarySwitches() == switches) {
    }
    done = true;
    other.join();
    EXPECT_GT(psInvoluntarySwitches(), switches);
    sched_setaffinity(0, sizeof before, &before);
}

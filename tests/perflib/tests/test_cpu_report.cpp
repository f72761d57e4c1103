// The processor report from recorded and made-up answers.

#include <sstream>
#include <string>

#include <ntkcore.h>

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"
#include "psbase.h"
#include "pscond.h"
#include "pscpufeatures.h"
#include "pscpuidtest.h"
#include "pscpureport.h"
#include "pscputopology.h"
#include "replay.h"

namespace {

constexpr unsigned multithreading = 1U << 28; // of leaf 1, EDX

// Leaf 4 lists the caches, leaf 0xB the levels; recorded on a virtual machine.
const Answers listed = {
    {{0, 0}, {0x1c, 0x656b614d, 0x00212065, 0x6e4f2072}},
    {{1, 0}, {0x000c06f2, 0x01020800, 0xfffa3203, 0x1f8bfbff}},
    {{4, 0}, {0x04000121, 0x02c0003f, 0x0000003f, 0}},
    {{4, 1}, {0x04000122, 0x01c0003f, 0x0000003f, 0}},
    {{4, 2}, {0x04000143, 0x03c0003f, 0x000007ff, 0}},
    {{4, 3}, {0x04004163, 0x04c0003f, 0x00033fff, 0}},
    {{0xb, 0}, {0, 1, 0x100, 1}},
    {{0xb, 1}, {5, 2, 0x201, 1}},
    {{0xb, 2}, {0, 0, 2, 1}},
    {{0x80000000, 0}, {0x80000021, 0, 0, 0}},
    {{0x80000006, 0}, {0, 0, 0x08007040, 0}},
};

// Leaf 4 is empty: caches in 0x8000001D, threads in 0x80000008 and 0x8000001E.
const Answers extended = {
    {{0, 0}, {0x10, 0, 0, 0}},
    {{1, 0}, {0x00870f10, 0x00100800, 0, multithreading}},
    {{0x80000000, 0}, {0x80000020, 0, 0, 0}},
    {{0x80000001, 0}, {0, 0, topologyExtensions, 0}},
    {{0x80000006, 0}, {0, 0, 0x82006140, 0}},
    {{0x80000008, 0}, {0, 0, 0x0000400f, 0}},
    {{0x8000001d, 0}, {0x00004121, 0x01c0003f, 0x0000003f, 1}},
    {{0x8000001d, 1}, {0x0000c263, 0x03c0003f, 0x00003fff, 2}},
    {{0x8000001e, 0}, {0, 0x00000100, 0, 0}},
};

psString signatureText(unsigned eax) {
    g_answers = {{{0, 0}, {1, 0, 0, 0}}, {{1, 0}, {eax, 0x12345607, 0, 0}}};
    const psCpuSignature s = psSignatureOf(CPUID(1, 0, replay));
    return psFormat("%d %d %d %d %d", s.family, s.model, s.stepping, s.type, s.brandId);
}

std::string countText(const psPackageCount& number) {
    return (number.isUpperLimit ? "<=" : "") + std::to_string(number.count);
}

} // namespace

TEST(CpuSignature, ExtendedFieldsAreAddedWhereTheyCount) {
    // EAX; family, model, stepping, type and brand
    const std::pair<unsigned, const char*> cases[] = {
        {0x000c06f2, "6 207 2 0 7"}, {0x00870f10, "23 113 0 0 7"}, {0x00100f42, "16 4 2 0 7"},
        {0x00000f4a, "15 4 10 0 7"}, {0x000307b5, "7 59 5 0 7"},   {0x0ff10543, "5 4 3 0 7"},
        {0x0ff01632, "6 3 2 1 7"}};
    for (const auto& [eax, numbers] : cases) {
        EXPECT_STREQ(signatureText(eax).c_str(), numbers) << std::hex << eax;
    }
}

TEST(CpuThreads, AreCountedWhereTheProcessorTellsThem) {
    const Registers two = {0, 2, 0x100, 0}; // threads of a core
    const Registers sixteen = {0, 16, 0x201, 0};
    const struct {
        const char* what;
        Answers answers; // besides leaf 1, which sets 140 numbers aside
        const char* counts;
    } cases[] = {
        {"levels", {{{0xb, 0}, two}, {{0xb, 1}, sixteen}}, "16 8"},
        {"newer levels first",
         {{{0x1f, 0}, two},
          {{0x1f, 1}, {0, 8, 0x201, 0}},
          {{0x1f, 2}, {0, 32, 0x502, 0}},
          {{0xb, 0}, two},
          {{0xb, 1}, sixteen}},
         "32 16"},
        {"cores of two kinds",
         {{{7, 0}, {0, 0, 0, 1U << 15}}, {{0xb, 0}, two}, {{0xb, 1}, sixteen}},
         "16 0"},
        {"the number of the last thread", {{{0x80000008, 0}, {0, 0, 0xff8f, 0}}}, "144 144"},
        {"and threads of a core",
         {{{1, 0}, {0x00870f10, 0, 0, multithreading}},
          {{0x80000001, 0}, {0, 0, topologyExtensions, 0}},
          {{0x80000008, 0}, {0, 0, 0x400f, 0}},
          {{0x8000001e, 0}, {0, 0xffff01ff, 0, 0}}},
         "16 8"},
        {"where an older family counts cores of a unit",
         {{{1, 0}, {0x00600f12, 0, 0, multithreading}},
          {{0x80000001, 0}, {0, 0, topologyExtensions, 0}},
          {{0x80000008, 0}, {0, 0, 0x3007, 0}},
          {{0x8000001e, 0}, {0, 0x100, 0, 0}}},
         "8 8"},
        {"numbers set aside", {{{4, 0}, {0x83ffc121, 0x01c0003f, 0x3f, 0}}}, "<=140 <=33"},
        {"leaf 4 hidden", {}, "<=140 0"},
        {"levels not told apart", {{{0xb, 0}, two}, {{0xb, 1}, two}, {{0xb, 2}, two}}, "<=140 0"},
        {"one thread alone",
         {{{1, 0}, {0, 0x000c0000, 0, 0}}, {{0xb, 0}, two}, {{0xb, 1}, sixteen}},
         "1 1"},
    };
    for (const auto& c : cases) {
        g_answers = c.answers;
        g_answers.insert({{0, 0}, {0x1f, 0, 0, 0}});
        g_answers.insert({{1, 0}, {0x000306f2, 0xff8cffff, 0, multithreading}});
        g_answers.insert({{0x80000000, 0}, {0x8000001e, 0, 0, 0}});
        const psCpuThreads threads = psThreadsOf(replay);
        EXPECT_EQ(countText(threads.logical) + " " + countText(threads.cores), c.counts) << c.what;
    }
}

TEST(CpuReport, TellsWhatTheProcessorTells) {
    const struct {
        const char* what;
        Answers answers;
        std::vector<std::string> pieces; // in this order
        std::vector<std::string> absent;
    } cases[] = {
        {"standard cache leaf",
         listed,
         {std::string(79, '=') + "\n" + std::string(79, '*') + "\n",
          "Got by CPUID Instruction Functions\n    Information below may be inadequate.\n",
          ": 0x1c\n",
          ": 0x80000021\n",
          ": Maker One !\n",
          std::string(79, '-') + "\n",
          "    Processor Identification Signature\n\n    Family ",
          ": 6\n",
          ": 207\n",
          "    Multi Threading Features\n\n",
          ": supported\n",
          ": 2\n",
          ": 2\n",
          "    Deterministic Cache Parameters\n\n    Data Cache\n",
          ": 1\n",
          ": 48 KB\n",
          ": 64\n",
          ": 64 bytes\n",
          ": 1\n",
          ": 12-way\n",
          "Self Initializing cache level\n",
          "Unified Cache\n",
          ": 3\n",
          ": 266240 KB\n",
          ": 2\n",
          "    Extended L2 Cache Features\n\n",
          ": 2048 KB\n"},
         {"Fully", "inclusive", "WBINVD", "Associativity                       : \n", "Brand  "}},
        {"extended cache leaf",
         extended,
         {": 23\n", ": 113\n", ": supported\n", ": 16\n", ": 8\n", "Data Cache\n", ": 32 KB\n",
          "WBINVD/INVD behavior on lower level caches\n", "Unified Cache\n", ": 3\n",
          ": 16384 KB\n", ": 4\n", "Fully Associative cache\n",
          "Cache is inclusive to lower cache levels\n", "    Extended L2 Cache Features\n\n",
          ": 33280 KB\n", ": 64 bytes\n", ": 8-Way\n"},
         {"Vendor", "at most 8"}},
        {"leaves hidden, caches without sizes",
         {{{0, 0}, {4, 0, 0, 0}}, {{4, 0}, {0x121, 0, 0, 0}}, {{4, 1}, {0x124, 0x02c0003f, 63, 0}}},
         {"Largest standard leaf               : 0x4\n" + std::string(79, '-') +
          "\n    Feature Flags\n"},
         {"Signature", "Threading", "Cache", "Largest extended"}},
        {"everything hidden", {}, {"    Feature Flags\n"}, {"CPUID", "Largest", "Family"}},
    };
    for (const auto& c : cases) {
        g_answers = c.answers;
        const std::string report = psCpuReport(replay, 7, 7).c_str();
        size_t at = 0;
        for (const std::string& piece : c.pieces) {
            at = report.find(piece, at);
            ASSERT_NE(at, std::string::npos) << c.what << ": " << piece << "\n" << report;
            at += piece.size();
        }
        for (const std::string& piece : c.absent) {
            EXPECT_FALSE(has(report, piece)) << c.what << ": " << piece;
        }
    }
}

TEST(CpuReport, WaysOfLevel2) {
    std::map<unsigned, std::string> ways = {
        {0, "Disabled"}, {1, "Direct mapped"},     {2, "2-Way"}, {4, "4-Way"}, {6, "8-Way"},
        {8, "16-Way"},   {15, "Fully associative"}};
    for (unsigned code = 0; code < 16; ++code) {
        g_answers = {{{0x80000000, 0}, {0x80000006, 0, 0, 0}},
                     {{0x80000006, 0}, {0, 0, 0x02000140 | code << 12, 0}}};
        const std::string report = psCpuReport(replay, 0, 0).c_str();
        const std::string line = report.substr(report.find(" 64 bytes\n") + 10);
        const std::string text =
            ways[code].empty() ? "Other (code " + std::to_string(code) + ")" : ways[code];
        EXPECT_EQ(line, "    Associativity                       : " + text + "\n");
    }
}

TEST(CpuReport, FlagsTellPresentAndEnabled) {
    const unsigned long long avx = 0x1df | NTK_CPU_AVX_OS;
    const std::string flags = psFeatureFlags(avx, 0x7, 0).c_str();
    for (const char* const piece :
         {"    Feature Flags\n    got by ntkGetCpuFeatures & ntkGetEnabledCpuFeatures\n\n",
          "\n    SSE2              yes      yes\n", "\n    AVX               yes      no\n",
          "\n    AVX2              no       no\n", "256-bit vector state : yes\n",
          "512-bit vector state : no\n"}) {
        EXPECT_TRUE(has(flags, piece));
    }
    EXPECT_TRUE(psFeatureFlags(7, 7, 0).contains("256-bit vector state : no\n"));
    EXPECT_TRUE(psFeatureFlags(7, 7, 0xe7).contains("512-bit vector state : yes\n"));
    for (const unsigned long long states : {0x7, 0x27, 0x47, 0x87, 0xe1}) {
        EXPECT_TRUE(psFeatureFlags(avx | NTK_CPU_AVX512F, 7, states)
                        .contains("512-bit vector state : no\n"))
            << states;
    }
    EXPECT_TRUE(psFeatureFlags(0, 0, 0).empty());
}

TEST(CpuReport, FeatureLineIsWrapped) {
    EXPECT_STREQ(psFeatureLine(0x1f, 0xf).c_str(), " Features : MMX SSE SSE2 SSE3 SSSE3(off)\n");
    std::istringstream lines(psFeatureLine(~0ULL, 0xf).c_str());
    std::string words, line;
    size_t widest = 0;
    for (const char* head = " Features : "; std::getline(lines, line); head = "            ") {
        EXPECT_EQ(line.substr(0, 12), head);
        widest = std::max(widest, line.size());
        words += line.substr(11);
    }
    EXPECT_EQ(widest, 79u);
    for (const psCpuFeature& row : psCpuFeatures()) {
        EXPECT_TRUE(
            has(words + " ", std::string(" ") + row.label + (row.mask > 0xf ? "(off) " : " ")));
    }
}

TEST(CpuReport, IsPrintedForWhoAsksForIt) {
    const Aside present(ntk_GetCpuFeatures);
    const Aside enabled(ntk_GetEnabledCpuFeatures);
    ntk_GetCpuFeatures = ntkGetCpuFeatures;
    ntk_GetEnabledCpuFeatures = ntkGetEnabledCpuFeatures;
    const struct {
        const char* what;
        std::vector<std::pair<const char*, int>> conditions;
        int level;
        bool full;
    } cases[] = {
        {"no condition", {}, PS_OUT_PERF, false},
        {"level", {}, PS_OUT_INFO, true},
        {"exact test", {{"-X", PS_BY_FUNCTION}, {"=Title", PS_BY_TEST}}, PS_OUT_PERF, true},
        {"excluded", {{"-Cpu", PS_BY_FUNCTION}}, PS_OUT_PERF, false},
        {"not excluded", {{"-X", PS_BY_FUNCTION}}, PS_OUT_PERF, false},
    };
    for (const auto& c : cases) {
        psConditions conditions;
        for (const auto& [pattern, group] : c.conditions) {
            conditions.append(psMakeCondition(pattern, group));
        }
        const Captured captured(c.level);
        __psBraskCpuTest test("__psBraskCpu", "Title", "ps");
        test.tobeRun(conditions);
        EXPECT_EQ(test.run(), PS_OK);
        EXPECT_EQ(captured.text().find("Feature Flags") != std::string::npos, c.full) << c.what;
        EXPECT_EQ(captured.text().find(" Features :") == std::string::npos, c.full) << c.what;
    }
}

#include <gtest/gtest.h>

#include "captured.h"
#include "option_session.h"

namespace {

// "Name=Value" words, as "-d" would preset them.
void presetAll(const std::string& words) {
    std::istringstream all(words);
    for (std::string word; all >> word;) {
        const size_t equals = word.find('=');
        g_istrm.preset(word.substr(0, equals).c_str(), word.substr(equals + 1).c_str());
    }
}

std::string methodText() {
    std::ostringstream text;
    switch (g_tool.method) {
    case PS_AUTO: text << "auto"; break;
    case PS_MANUAL: text << "manual " << g_tool.loopNumLoops; break;
    case PS_STATISTIC:
        text << "statistic " << g_tool.statMinCalls << " " << g_tool.statMaxClocks;
        break;
    default:
        text << "iterative " << g_tool.bestMinLoops << " " << g_tool.bestMaxLoops << " "
             << g_tool.bestMinClocks;
    }
    text << " " << 100 * g_tool.accuracyLimit << "%";
    return text.str();
}

std::string offsetText() {
    std::ostringstream text;
    text << (psGetAlignByByte() ? "byte " : "element ") << psGetVectorAlign()
         << (psGetAlignSrc() ? " first " : " all ") << psGetVectorShift();
    return text.str();
}

} // namespace

TEST(CommonData, TimingMethod) {
    const struct {
        const char *presets, *method;
        int reported, rejected;
    } cases[] = {
        {"", "auto 5%", 0, 0},
        {"Method=man NumLoops=7 Accuracy=2", "manual 7 2%", 3, 0},
        {"Method=Statistic NumCalls=3 TotalCpuClocks=5000000000", "statistic 3 5000000000 5%", 3,
         0},
        {"Method=Statistic", "statistic 12 10000 5%", 1, 0},
        {"Method=I StartNumLoops=3 StopNumLoops=10 MinCpuClocks=5", "iterative 3 24 5 5%", 4, 0},
        {"Method=Wrong", "auto 5%", 0, 1},
        {"Method=Manual NumLoops=0", "manual 10 5%", 1, 1},
        {"Accuracy=4,5", "auto 5%", 0, 1},
        {"Method=Statistic TotalCpuClocks=1e6", "statistic 12 10000 5%", 1, 1},
        {"Method=Statistic TotalCpuClocks=10000000000000000000", "statistic 12 10000 5%", 1, 1},
    };
    for (const auto& c : cases) {
        const Captured output;
        OptionSession session;
        presetAll(c.presets);
        EXPECT_EQ(psReadTimingMethod(session), c.reported) << c.presets;
        EXPECT_EQ(methodText(), c.method) << c.presets;
        const std::string text = output.text();
        EXPECT_EQ(timesIn(text, "is rejected"), c.rejected) << text;
        EXPECT_EQ(timesIn(text, "***"), 0) << text; // nothing is asked
        EXPECT_EQ(timesIn(text, "\n"), c.reported + c.rejected) << text;
    }
}

TEST(CommonData, TimingHookGivesTheDefaults) {
    const Captured output;
    OptionSession session;
    const int freqBefore = psCpuTicker::knownFreq();
    psRegTimingMethod([](psTool& tool) { tool.setMethodBest(3, 100, 50); });
    presetAll("StopNumLoops=200");
    EXPECT_EQ(psReadTimingMethod(session), 1);
    psRegTimingMethod(nullptr);
    EXPECT_EQ(methodText(), "iterative 3 200 50 5%");
    EXPECT_EQ(output.text(), "StopNumLoops = 200\n");
    EXPECT_EQ(psCpuTicker::knownFreq(), freqBefore); // two seconds that nobody asked for
}

TEST(CommonData, VectorPlacement) {
    const struct {
        const char *presets, *placement;
        int reported;
    } cases[] = {
        {"", "byte 0 first 512", 0},
        {"AlignVectorsBy=el VectorAlign=63 MisalignFirstVectorOnly=no MutualVectorShift=128",
         "element 63 all 128", 4},
        {"AlignVectorsBy=b VectorAlign=0 MisalignFirstVectorOnly=yes MutualVectorShift=0",
         "byte 0 first 0", 4},
        {"VectorAlign=64", "byte 0 first 512", 0},
        {"MutualVectorShift=100", "byte 0 first 512", 0},
        {"MutualVectorShift=-64", "byte 0 first 512", 0},
    };
    for (const auto& c : cases) {
        const Captured output;
        OptionSession session;
        presetAll(c.presets);
        EXPECT_EQ(psReadDataOffset(session), c.reported) << c.presets;
        EXPECT_EQ(offsetText(), c.placement) << c.presets;
        psSetAlignByByte(true);
        psSetVectorAlign(0);
        psSetAlignSrc(true);
        psSetVectorShift(512);
    }
}

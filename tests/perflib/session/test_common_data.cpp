#include <gtest/gtest.h>

#include "captured.h"
#include "option_session.h"
#include "psdefault.h"

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

// The console says these bytes.
class Answers {
public:
    explicit Answers(const std::string& text)
        : m_file(fopen(writeFile(testPath("answers.txt"), text).c_str(), "r")) {
        g_istrm.setIStream(m_file);
    }
    ~Answers() {
        g_istrm.setIStream(nullptr);
        fclose(m_file);
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

private:
    FILE* m_file;
};

} // namespace

TEST(CommonData, TimingMethod) {
    const struct {
        const char *presets, *method;
        int reported, rejected;
    } cases[] = {
        {"", "auto 5%", 0, 0},
        {"Accuracy=0.5 NumLoops=3", "auto 0.5%", 1, 0},
        {"Method=man NumLoops=7 Accuracy=2", "manual 7 2%", 3, 0},
        {"Method=Manual", "manual 10 5%", 1, 0},
        {"Method=Statistic NumCalls=3 TotalCpuClocks=5000000000", "statistic 3 5000000000 5%", 3,
         0},
        {"Method=Statistic", "statistic 12 10000 5%", 1, 0},
        {"Method=Iterative", "iterative 1 2048 10000 5%", 1, 0},
        {"Method=I StartNumLoops=3 StopNumLoops=10 MinCpuClocks=5", "iterative 3 24 5 5%", 4, 0},
        {"Method=Wrong", "auto 5%", 0, 1},
        {"Method=Manual NumLoops=0", "manual 10 5%", 1, 1},
        {"Method=Manual NumLoops=many", "manual 10 5%", 1, 1},
        {"Accuracy=0", "auto 5%", 0, 1},
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
        {"VectorAlign=-1", "byte 0 first 512", 0},
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

TEST(CommonData, ConsoleAndSettingsFile) {
    const auto bannerOf = [](const char* title) {
        return std::string(psSession::getEnterTitle(title).c_str());
    };
    const std::string timing = bannerOf("Specify timing method, please");
    const std::string params = bannerOf("Specify common test parameters, please");
    const std::string placement = bannerOf("Specify vectors alignment, please");
    const struct {
        int askMode;
        const char *answers, *settings;
        std::string text;
        int reported;
    } cases[] = {
        {PS_ASK_TIMING, "x\nman\n\n3\n", "[Perf System]\nLen=4\n[f]\nLen=5\n",
         timing + "Method {Auto|Manual|Statistic|Iterative} [Auto]: x\n"
                  "--NTK. Exception: Invalid value of Method = x (Method = x is rejected; "
                  "keeping Auto)\n"
                  "Method {Auto|Manual|Statistic|Iterative} [Auto]: man\nMethod = Manual\n"
                  "NumLoops [10]: \nAccuracy, % [5]: 3\nAccuracy = 3\nLen = 4\n",
         4},
        {PS_ASK_PARAMS, "9\n", "", params + "How long [1]: 9\nLen = 9\n", 1},
        {PS_ASK_MISALIGN, "element\n\n\n\n", "[Perf System]\nMisalignFirstVectorOnly=yes\n",
         placement + "AlignVectorsBy {byte|element} [byte]: element\nAlignVectorsBy = element\n"
                     "VectorAlign by Element, 0..63 [0]: \nMisalignFirstVectorOnly = yes\n"
                     "MutualVectorShift in Bytes, divisible by 64 [512]: \n",
         4},
        {PS_ASK_PARAMS, "9\n", "[Perf System]\nLen=4\n", "Len = 4\n", 1}, // no question, no banner
        {PS_ASK_TESTS, "1\n2\n3\n", "", "", 0},
    };
    psDefault<int> used(1, "Len", "How long"), unused(1, "Width");
    unused.setInUse(false);
    psList<psParameter*> parms;
    parms.append(&used);
    parms.append(&unused);
    g_pParmList = &parms;
    for (const auto& c : cases) {
        const Captured output;
        OptionSession session;
        used.setDefault(1);
        session.addAskMode(c.askMode);
        const Answers answers(c.answers);
        g_istrm.setIniFile(writeFile(testPath("common.ini"), c.settings).c_str(), false);
        g_istrm.setSection("f"); // as the test before left it
        int reported = psReadTimingMethod(session);
        reported += psReadTestParameters(session);
        reported += psReadDataOffset(session);
        EXPECT_EQ(reported, c.reported) << c.askMode;
        EXPECT_EQ(output.text(), c.text);
        psSetAlignByByte(true);
        psSetVectorAlign(0);
    }
    g_pParmList = nullptr;
}

// The settings that hold for all tests of a session, read before the first of them: timing method,
// common parameters, placement of vectors.

#include <limits>
#include <type_traits>

#include "ps.h"
#include "psalloc.h"
#include "psdefault.h"
#include "psistream.h"
#include "pstool.h"

namespace {

// One reader's block of questions: counts what it asked or took.
class Block {
public:
    Block(const psSession& session, psAskMode bit, const char* title) : m_title(title) {
        g_istrm.setSection(psIStream::commonSection);
        g_istrm.setAsking((session.askMode() & bit) != 0);
    }

    // Reads the definition of parm. What was found is reported, so that a log tells with which
    // settings its numbers were measured.
    void read(psParameter& parm) {
        const bool asks = parm.isInUse() && g_istrm.willAsk(parm.name());
        if (asks && !m_bannerShown) {
            g_ostrm << PS_ERR << psSession::getEnterTitle(m_title) << PS_END;
            m_bannerShown = true;
        }
        const bool taken = parm.fromIStream(g_istrm);
        if (taken) {
            g_ostrm << PS_ERR << parm.description() << "\n" << PS_END;
        }
        m_reported += taken || asks ? 1 : 0;
    }

    int reported() const { return m_reported; }

private:
    const char* m_title;
    bool m_bannerShown = false;
    int m_reported = 0;
};

// A number with the values that make sense.
template <class T> class Number : public psDefault_NSC<T> {
public:
    Number(T defaultValue, T lowest, const char* name, const char* promptName = "",
           T highest = std::numeric_limits<T>::max(), T unit = 0)
        : psDefault_NSC<T>(defaultValue, name, promptName), m_lowest(lowest), m_highest(highest),
          m_unit(unit) {}

    T validItem(const psString& text) override {
        const T value = psDefault_NSC<T>::validItem(text);
        if (!(value >= m_lowest && value <= m_highest) || !isMultiple(value)) {
            this->refuse(text);
        }
        return value;
    }

private:
    bool isMultiple(T value) const {
        if constexpr (std::is_integral_v<T>) {
            return m_unit == 0 || value % m_unit == 0;
        }
        return true;
    }

    T m_lowest, m_highest, m_unit;
};

template <class T> T readNumber(Block& block, Number<T>&& number) {
    block.read(number);
    return number.value();
}

bool readChoice(Block& block, const char* name, bool current, const char* yes, const char* no) {
    psMapDefault<bool> choice(current, name);
    choice.addMap(yes, true);
    choice.addMap(no, false);
    block.read(choice);
    return choice.value();
}

int readMethod(Block& block) {
    psMapDefault<int> method(g_tool.method, "Method");
    method.addMap("Auto", PS_AUTO);
    method.addMap("Manual", PS_LOOP);
    method.addMap("Statistic", PS_STAT);
    method.addMap("Iterative", PS_BEST);
    block.read(method);
    return method.value();
}

void readManual(Block& block) {
    g_tool.setMethodLoop(readNumber(block, Number<int>(g_tool.loopNumLoops, 1, "NumLoops")));
}

void readStatistic(Block& block) {
    const int calls = readNumber(block, Number<int>(g_tool.statMinCalls, 1, "NumCalls"));
    const long long clocks =
        readNumber(block, Number<long long>(g_tool.statMaxClocks, 0, "TotalCpuClocks"));
    g_tool.setMethodStat(calls, clocks);
}

void readIterative(Block& block) {
    int first = 0, last = 0;
    long long clocks = 0;
    if (!g_tool.getMethodBest(first, last, clocks)) {
        psTool::getAutoParameters(first, last, clocks);
    }
    first = readNumber(block, Number<int>(first, 1, "StartNumLoops"));
    last = readNumber(block, Number<int>(last, 1, "StopNumLoops"));
    clocks = readNumber(block, Number<long long>(clocks, 1, "MinCpuClocks"));
    g_tool.setMethodBest(first, last, clocks);
}

void readMethodParameters(Block& block, int method) {
    switch (method) {
    case PS_LOOP: readManual(block); break;
    case PS_STAT: readStatistic(block); break;
    case PS_BEST: readIterative(block); break;
    default: g_tool.setMethodAuto();
    }
}

} // namespace

int psReadTimingMethod(psSession& session) {
    Block block(session, PS_ASK_TIMING, "Specify timing method, please");
    for (const char* const name : {"NumLoops", "NumCalls", "TotalCpuClocks", "StartNumLoops",
                                   "StopNumLoops", "MinCpuClocks"}) {
        g_istrm.know(name); // also those of the methods not chosen
    }
    if (initTimingMethod) { // what it sets up is the default of the questions
        initTimingMethod(g_tool);
    }
    readMethodParameters(block, readMethod(block));
    constexpr double leastPercent = 0.001;
    g_tool.accuracyLimit =
        readNumber(block, Number<double>(100 * g_tool.accuracyLimit, leastPercent, "Accuracy",
                                         "Accuracy, %")) /
        100;
    return block.reported();
}

int psReadTestParameters(psSession& session) {
    Block block(session, PS_ASK_PARAMS, "Specify common test parameters, please");
    if (g_pParmList) {
        for (psParameter* const parm : *g_pParmList) {
            block.read(*parm);
        }
    }
    return block.reported();
}

int psReadDataOffset(psSession& session) {
    Block block(session, PS_ASK_MISALIGN, "Specify vectors alignment, please");
    const bool byByte = readChoice(block, "AlignVectorsBy", psGetAlignByByte(), "byte", "element");
    psSetAlignByByte(byByte);
    const char* const prompt =
        byByte ? "VectorAlign by Byte, 0..63" : "VectorAlign by Element, 0..63";
    psSetVectorAlign(
        readNumber(block, Number<int>(psGetVectorAlign(), 0, "VectorAlign", prompt, 63)));
    psSetAlignSrc(readChoice(block, "MisalignFirstVectorOnly", psGetAlignSrc(), "yes", "no"));
    constexpr int unitBytes = 64;
    psSetVectorShift(readNumber(block, Number<int>(psGetVectorShift(), 0, "MutualVectorShift",
                                                   "MutualVectorShift in Bytes, divisible by 64",
                                                   std::numeric_limits<int>::max(), unitBytes)));
    return block.reported();
}

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

    // Reads the definition of parm. What was found is reported, so that a log shows with which
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
            this->reject(text);
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

const psTimingMethod& readMethod(Block& block) {
    psMapDefault<int> method(g_tool.method, "Method");
    for (const psTimingMethod& candidate : psTool::methods()) {
        method.addMap(candidate.name, candidate.id);
    }
    block.read(method);
    const psTimingMethod* const chosen = psTool::findMethod(method.value());
    return chosen ? *chosen : psTool::methods().front();
}

void readSetting(Block& block, const psMethodSetting& setting) {
    std::visit(
        [&](auto member) {
            using T = std::remove_reference_t<decltype(g_tool.*member)>;
            g_tool.*member =
                readNumber(block, Number<T>(g_tool.*member, setting.lowest, setting.name));
        },
        setting.value);
}

void readMethodSettings(Block& block, const psTimingMethod& method) {
    if (g_tool.method != method.id) {
        method.setDefaults(g_tool);
    }
    for (const psMethodSetting& setting : method.settings) {
        readSetting(block, setting);
    }
    method.choose(g_tool);
}

} // namespace

int psReadTimingMethod(psSession& session) {
    Block block(session, PS_ASK_TIMING, "Specify timing method, please");
    for (const psTimingMethod& method : psTool::methods()) {
        for (const psMethodSetting& setting : method.settings) {
            g_istrm.declareName(setting.name); // also those of the methods not chosen
        }
    }
    if (initTimingMethod) { // what it sets up is the default of the questions
        initTimingMethod(g_tool);
    }
    readMethodSettings(block, readMethod(block));
    constexpr double minPercent = 0.001;
    g_tool.accuracyLimit = readNumber(block, Number<double>(100 * g_tool.accuracyLimit, minPercent,
                                                            "Accuracy", "Accuracy, %")) /
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

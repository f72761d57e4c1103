// obj2: a large application of a machine with 16-bit instruction words and big-endian numbers, in
// the resource format of its desktop: string lists and menus, then code segments.
#include <cstdint>
#include <iterator>
#include <vector>

#include "bytes.h"
#include "files.h"
#include "expander.h"
#include "machine_code.h"
#include "sentences.h"
#include "vocabulary.h"

namespace corpus {

namespace {

// Menus, messages and templates before the code, in percent of the file.
constexpr std::size_t kResourcePercent = 9;

constexpr std::size_t kSegmentBytes = 24000;

// Entries of the jump table; a procedure calls its favourites again and again.
constexpr int kJumps = 240;
constexpr unsigned kJumpFlatness = 10;

// Statements that look like one shortly before: a compiler makes the same code of them. Together
// with the lists above this sets how well the code packs.
constexpr int kRepeatPerMille = 380;
constexpr std::uint32_t kRepeatStatements = 4;
constexpr std::size_t kRecentStatements = 250;

// h local variable, i argument, j call through the jump table, k short constant, l global,
// m branch forward, n register pair, o system trap, p record field. Frequent patterns first:
// a compiler repeats itself, so most of them are whole idioms.
constexpr std::string_view kPatterns[] = {
    "486E h",
    "4EAD j",
    "3F2E h",
    "2F2E i",
    "486E h 486E h 2F3C 0000 k 4EAD j",
    "302E h 3D40 h",
    "486E h 4EAD j",
    "3F3C k",
    "4A6E h 6600 m",
    "426E h",
    "486E h 4EAD j 6700 m",
    "3D7C k h",
    "302E h 4EAD j 0001 k 7200 41EA p",
    "206E i 2068 p",
    "2F07 7001 3E12 9E40 6D00 m 3D40 h",
    "526E h 51CF m 2E1F",
    "0C6E k h 6600 m",
    "A8o",
    "2D6E i h",
    "302E h B06E h 6F00 m",
    "6000 m",
    "1F3C 0001 4EAD j",
    "C1FC k 41EC l",
    "2F2D l 4EAD j",
    "3F2E h 486A p 486E h 2F3C 0000 k 4EAD j",
    "48C0 81FC k 3D40 h",
    "266E i 3D6B p h",
    "A9o",
    "4440 48C0 D06E h",
    "102E h 4880 4EAD j 0000 0001",
    "57C0 4400 8600 6700 m",
    "2F n 4EAD j 4A1F 6700 m",
};

constexpr Rule kRules[] = {
    {"message", Split::Lines, kZipf, R"(
        $(tverb:cap) $tnoun
        $(tverb:cap) $tnoun as
        $(tnoun:cap)
        $(tadj:cap) $tnoun
        OK to $tverb "#1"?
        The $tnoun is $tadj
        #@ $(tverb:cap) #i "#p"
        Can you $tverb $(tnoun:an) that $(tverb:s) #1?
        #n
        $(tverb:ing) using #1
        $(statement:cap))"},
};

class LargeObject {
public:
    explicit LargeObject(std::size_t sizeBytes)
        : m_sizeBytes(sizeBytes),
          m_grammar({technicalWords(), names(), reportSentences(), kRules}, 100),
          m_text(m_grammar, 12), m_random(m_text.random()), m_patterns(std::size(kPatterns), 8),
          m_jumps(kJumps, kJumpFlatness) {}

    std::string write() {
        while (m_out.size() < m_sizeBytes * kResourcePercent / 100) {
            writeStringList();
        }
        while (m_out.size() < m_sizeBytes) {
            writeSegment();
        }
        m_out.resize(m_sizeBytes);
        return m_out;
    }

private:
    // A count and strings behind their length byte.
    void writeStringList() {
        const int count = m_random.between(3, 25);
        std::string strings;
        for (int i = 0; i < count; ++i) {
            const std::string message = m_text.expand("$message");
            append8(static_cast<std::uint32_t>(message.size()), strings);
            strings += message;
        }
        appendBig32(static_cast<std::uint32_t>(strings.size()) + 2, m_out);
        appendBig16(static_cast<std::uint32_t>(count), m_out);
        m_out += strings;
    }

    void writeSegment() {
        appendBig32(kSegmentBytes, m_out);
        appendBig16(m_random.below(kJumps) * 8, m_out);
        appendBig16(30, m_out);
        const std::size_t end = m_out.size() + kSegmentBytes;
        while (m_out.size() < end) {
            writeProcedure();
        }
    }

    void writeProcedure() {
        const std::uint32_t frameBytes = 2 * m_random.below(150) + 8;
        drawLocals(frameBytes);
        const std::uint32_t savedRegisters = m_random.chance(500) ? 0x0020 : 0x1038;
        appendBig16(0x4E56, m_out);
        appendBig16(0x10000 - frameBytes, m_out);
        appendBig16(0x48E7, m_out);
        appendBig16(savedRegisters, m_out);
        for (int count = m_random.between(6, 70); count > 0; --count) {
            writeStatement();
        }
        appendBig16(0x4CDF, m_out);
        appendBig16(savedRegisters == 0x0020 ? 0x0400 : 0x1C08, m_out);
        appendCode(
            "4E5E 205F 4FEF 000A 4ED0", [](char) {}, m_out);
        writeLiterals();
    }

    void writeStatement() {
        if (m_random.chance(kRepeatPerMille)) {
            m_recent.repeat(kRepeatStatements, m_random, m_out);
            return;
        }
        const std::size_t start = m_out.size();
        appendCode(
            kPatterns[m_patterns.pick(m_random)], [this](char kind) { appendOperand(kind); },
            m_out);
        m_recent.add(m_out.substr(start));
    }

    // Each procedure has its own variables, a few of which it uses most.
    void drawLocals(std::uint32_t frameBytes) {
        m_locals.clear();
        for (int i = m_random.between(3, 12); i > 0; --i) {
            m_locals.push_back(0x10000 - 2 * (1 + m_random.below(frameBytes / 2)));
        }
        m_ownJumps.clear();
        for (int i = m_random.between(3, 14); i > 0; --i) {
            m_ownJumps.push_back(34 + 8 * static_cast<std::uint32_t>(m_jumps.pick(m_random)));
        }
    }

    // Constants of a procedure stand behind its code.
    void writeLiterals() {
        if (m_random.chance(300)) {
            const std::string message = m_text.expand("$message");
            append8(static_cast<std::uint32_t>(message.size()), m_out);
            m_out += message;
        }
        m_out.resize((m_out.size() + 1) / 2 * 2, '\0');
    }

    void appendOperand(char kind) {
        switch (kind) {
        case 'h': return appendBig16(m_random.pick(m_locals), m_out);
        case 'i': return appendBig16(8 + 2 * m_random.below(5), m_out);
        case 'j': return appendBig16(m_random.pick(m_ownJumps), m_out);
        case 'k': return appendBig16(smallConstant(), m_out);
        case 'l': return appendBig16(0xE000 + 2 * m_random.below(900), m_out);
        case 'm': return appendBig16(4 + 2 * m_random.below(branchReach()), m_out);
        case 'n': return append8(0x07 + m_random.below(6), m_out);
        case 'o': return append8(0x60 + m_random.below(90), m_out);
        default: return appendBig16(2 * m_random.below(100), m_out);
        }
    }

    // Half of the branches skip a statement or two.
    std::uint32_t branchReach() { return m_random.chance(500) ? 20 : 200; }

    std::uint32_t smallConstant() { return m_random.below(m_random.chance(700) ? 16 : 256); }

    std::size_t m_sizeBytes;
    Grammar m_grammar;
    Expander m_text;
    Random& m_random;
    RankPicker m_patterns;
    RecentStatements m_recent{kRecentStatements};
    RankPicker m_jumps;
    std::vector<std::uint32_t> m_locals;
    std::vector<std::uint32_t> m_ownJumps;
    std::string m_out;
};

} // namespace

std::string makeLargeObject(std::size_t sizeBytes) {
    return LargeObject(sizeBytes).write();
}

} // namespace corpus

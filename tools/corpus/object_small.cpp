// obj1: a small executable of a machine with byte-long opcodes, operands that carry their own
// addressing mode, and little-endian numbers. Header page, code, strings, data, symbols.
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

constexpr std::size_t kPageBytes = 1024;

// Shares of the file, in percent of its size: the rest behind them is symbols and zeros.
constexpr std::size_t kCodePercent = 68;
constexpr std::size_t kStringsPercent = 10;
constexpr std::size_t kDataPercent = 8;

// Statements that look like one shortly before: a compiler makes the same code of them.
constexpr int kRepeatPerMille = 260;
constexpr std::uint32_t kRepeatStatements = 3;
constexpr std::size_t kRecentStatements = 120;

// The more variables and functions, the less the 32-bit distances in the code repeat.
constexpr int kVariables = 70;
constexpr int kFunctions = 60;

// s source operand, t target, l literal, j short jump, k far jump, p procedure, v variable,
// r register. The frequent patterns first.
constexpr std::string_view kPatterns[] = {
    "DD s",
    "D0 s t",
    "FB l EF p",
    "D0 s r",
    "DD s FB 01 EF p",
    "D5 s 13 j",
    "D1 s s 14 j",
    "DE EF v r",
    "91 EF v s 12 j",
    "C1 l r r",
    "DD s DD s FB 02 EF p",
    "11 j",
    "98 EF v r",
    "C4 14 r C1 r 8F n r D0 r r",
    "DD r",
    "D6 s",
    "D4 s",
    "32 EF v 7E FB 01 EF p",
    "6E s r",
    "31 k",
    "C2 r r",
    "D5 r 12 05 D0 01 r 11 02 D4 r",
    "95 s 13 j",
    "90 s t",
    "70 r s",
    "F6 r EF v",
    "9A s r",
    "E9 s j",
    "CA r r",
    "78 l r r",
    "D0 r t 11 j",
    "64 t r",
};

constexpr Rule kRules[] = {
    {"message", Split::Lines, kZipf, R"(
        $tnoun of $tnoun:
        %$d19D
        $tverb $tnoun
         %$two.$(d19)f
        $letter-$tadj $tnoun:
        $tnoun $tadj in $(tverb:cap)
        No $tnoun $(tnoun:pl)
        $(tnoun:up)
        $(tnoun:cap) counts:          )"},
    {"letter", Split::Words, kEven, "k d w p s c n q v x"},
    {"symbol", Split::Lines, kZipf, R"(
        _$root
        _$root$d19
        L$two
        _$root$root)"},
    {"root", Split::Words, kBroad, R"(
        init read write scan move tree node level count print error exit main alloc free open close
        next last sum rate table key hash seek flush line char file page queue merge sort)"},
};

class SmallObject {
public:
    explicit SmallObject(std::size_t sizeBytes)
        : m_sizeBytes(sizeBytes), m_codeEnd(kPageBytes + sizeBytes * kCodePercent / 100),
          m_grammar({technicalWords(), names(), kRules}, 100), m_text(m_grammar, 11),
          m_random(m_text.random()), m_patterns(std::size(kPatterns), 8) {
        for (int i = 0; i < kVariables; ++i) {
            m_variables.push_back(static_cast<std::uint32_t>(m_codeEnd) + 4 * m_random.below(2000));
        }
        for (int i = 0; i < kFunctions; ++i) {
            m_functions.push_back(static_cast<std::uint32_t>(kPageBytes) +
                                  2 * m_random.below(static_cast<std::uint32_t>(sizeBytes / 3)));
        }
    }

    std::string write() {
        writeHeader();
        while (m_out.size() < m_codeEnd) {
            writeFunction();
        }
        writeStrings(m_out.size() + m_sizeBytes * kStringsPercent / 100);
        writeData(m_out.size() + m_sizeBytes * kDataPercent / 100);
        writeSymbols();
        m_out.resize(m_sizeBytes, '\0');
        return m_out;
    }

private:
    void writeHeader() {
        const std::size_t sizes[] = {0x108, m_codeEnd - kPageBytes, 0x1400, 0x3C0A, 0x2C8, 0, 0x340,
                                     0};
        for (const std::size_t size : sizes) {
            appendLittle32(static_cast<std::uint32_t>(size), m_out);
        }
        m_out.resize(kPageBytes, '\0');
    }

    void writeFunction() {
        m_locals = m_random.between(2, 9);
        appendLittle16(0x0FC0 & (0xFFFFu << m_random.between(6, 11)), m_out);
        appendCode(
            "C2 l 5E", [this](char kind) { appendOperand(kind); }, m_out);
        for (int count = m_random.between(5, 40); count > 0; --count) {
            writeStatement();
        }
        append8(0x04, m_out);
        m_out.resize((m_out.size() + 1) / 2 * 2, '\0');
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

    void appendOperand(char kind) {
        switch (kind) {
        case 's': return appendSource();
        case 't': return m_random.chance(600) ? appendLocal() : appendVariable();
        case 'l': return append8(m_random.chance(300) ? 1 : 4 * m_random.below(8), m_out);
        case 'r': return append8(0x50 + m_random.below(m_random.chance(600) ? 3 : 10), m_out);
        case 'j': return append8(m_random.below(m_random.chance(500) ? 32 : 256), m_out);
        case 'k': return appendLittle16(m_random.below(1200), m_out);
        case 'n': return appendLittle32(0x4000 + 8 * m_random.below(900), m_out);
        case 'v': return appendDistance(m_random.pick(m_variables));
        default: return appendDistance(m_random.pick(m_functions));
        }
    }

    void appendSource() {
        const std::uint32_t mode = m_random.below(10);
        if (mode < 4) {
            appendOperand('r');
        } else if (mode < 7) {
            appendLocal();
        } else if (mode < 9) {
            appendVariable();
        } else {
            append8(m_random.below(64), m_out);
        }
    }

    // An argument or a local variable: a byte offset to the argument or the frame pointer.
    void appendLocal() {
        const bool isArgument = m_random.chance(300);
        const int slot = m_random.between(1, isArgument ? 3 : m_locals);
        append8(isArgument ? 0xAC : 0xAD, m_out);
        append8(static_cast<std::uint32_t>(isArgument ? 4 * slot : -4 * slot), m_out);
    }

    void appendVariable() {
        append8(0xEF, m_out);
        appendOperand('v');
    }

    // Addresses are relative to the end of the field that holds the distance.
    void appendDistance(std::uint32_t target) {
        appendLittle32(target - static_cast<std::uint32_t>(m_out.size()) - 4, m_out);
    }

    void writeStrings(std::size_t end) {
        while (m_out.size() < end) {
            m_out += m_text.expand("$message");
            append8(0, m_out);
        }
    }

    void writeData(std::size_t end) {
        m_out.resize((m_out.size() + 3) / 4 * 4, '\0');
        while (m_out.size() < end) {
            const bool isAddress = m_random.chance(500);
            appendLittle32(isAddress ? m_random.pick(m_variables) : m_random.below(64), m_out);
        }
    }

    // A symbol is its place in the string table, a type and an address; the names follow. What
    // is left of the last page stays 0.
    void writeSymbols() {
        std::string symbolNames;
        for (const std::uint32_t address : m_functions) {
            appendLittle32(static_cast<std::uint32_t>(symbolNames.size()) + 4, m_out);
            appendLittle32(0x05, m_out);
            appendLittle32(address, m_out);
            symbolNames += m_text.expand("$symbol");
            symbolNames.push_back('\0');
        }
        m_out += symbolNames;
    }

    std::size_t m_sizeBytes;
    std::size_t m_codeEnd;
    Grammar m_grammar;
    Expander m_text;
    Random& m_random;
    RankPicker m_patterns;
    RecentStatements m_recent{kRecentStatements};
    std::vector<std::uint32_t> m_variables;
    std::vector<std::uint32_t> m_functions;
    int m_locals = 0;
    std::string m_out;
};

} // namespace

std::string makeSmallObject(std::size_t sizeBytes) {
    return SmallObject(sizeBytes).write();
}

} // namespace corpus

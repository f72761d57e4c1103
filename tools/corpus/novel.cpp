// book1: a country novel as keyed in from print: short lines, page marks, much talk.
#include "expander.h"
#include "files.h"
#include "sentences.h"
#include "textflow.h"
#include "vocabulary.h"

namespace corpus {

namespace {

// Above 100 the vocabulary is used more evenly; tuned so that gzip and LZ4 find as little to
// repeat as in a novel of 12000 different words.
constexpr unsigned kFlatnessPercent = 200;

// A chapter returns to its own things and people, which keeps small windows compressible.
constexpr int kTopicSharePerMille = 150;
constexpr int kTopicWords = 30;

// Words of dialect in place of listed ones: the long tail of words that a novel uses only once.
constexpr int kDialectPerMille = 150;

constexpr std::size_t kPrintedPageBytes = 2100;
constexpr std::size_t kChapterBytes = 14000;
constexpr std::size_t kLineColumns = 55;

// Letters that the scanner took for others, per mille of all characters.
constexpr int kScanSlipsPerMille = 6;

// Replaces a letter now and then by one of a similar shape.
std::string scanned(std::string text, Random& random) {
    static constexpr std::string_view kLetters = "ehnuclirtabovwy.,I";
    static constexpr std::string_view kTakenFor = "cbunetjtfod0cvv,.1";
    for (char& letter : text) {
        const auto found = kLetters.find(letter);
        if (found != std::string_view::npos && random.chance(kScanSlipsPerMille)) {
            letter = kTakenFor[found];
        }
    }
    return text;
}

class Novel {
public:
    explicit Novel(std::size_t sizeBytes)
        : m_sizeBytes(sizeBytes), m_grammar({everydayNouns(), everydayVerbsAndAdjectives(), names(),
                                             storyParts(), storyClauses(), storyTalk()},
                                            kFlatnessPercent),
          m_text(m_grammar, 1), m_flow(kLineColumns) {}

    std::string write() {
        m_flow.line("<Y 1881>\n<A ANON.>\n<T The Lights of Saltmouth>");
        m_text.setCoinedShare(kDialectPerMille);
        m_text.bind("hero", "Edwin");
        m_text.bind("heroine", "Hester");
        m_text.bind("villain", "Harlow");
        m_text.bind("elder", "Tolland");
        while (m_flow.sizeBytes() < m_sizeBytes) {
            writeChapter();
        }
        return fitTo(m_flow.text(), m_sizeBytes);
    }

private:
    void writeChapter() {
        ++m_chapter;
        m_text.setTopic(m_chapter, kTopicSharePerMille, kTopicWords);
        const std::size_t end = m_flow.sizeBytes() + kChapterBytes;
        m_flow.line("<C " + std::to_string(m_chapter) + ">");
        m_flow.line(m_text.expand("$(title:up)"));
        while (m_flow.sizeBytes() < end) {
            m_text.random().chance(350) ? writeTalk() : writeNarration();
            markPage();
        }
    }

    void writeNarration() {
        for (int sentences = m_text.random().between(1, 7); sentences > 0; --sentences) {
            writeSentence("$(narration:cap)");
        }
        m_flow.endParagraph();
    }

    void writeTalk() {
        for (int turns = m_text.random().between(2, 9); turns > 0; --turns) {
            writeSentence("$speech");
            m_flow.endParagraph();
        }
    }

    void writeSentence(std::string_view text) {
        m_flow.fill(scanned(m_text.expand(text), m_text.random()));
    }

    void markPage() {
        if (m_flow.sizeBytes() >= m_pageEnd) {
            m_flow.line("<P " + std::to_string(++m_page) + ">");
            m_pageEnd += kPrintedPageBytes;
        }
    }

    std::size_t m_sizeBytes;
    Grammar m_grammar;
    Expander m_text;
    TextFlow m_flow;
    int m_chapter = 0;
    int m_page = 8;
    std::size_t m_pageEnd = kPrintedPageBytes;
};

} // namespace

std::string makeNovel(std::size_t sizeBytes) {
    return Novel(sizeBytes).write();
}

} // namespace corpus

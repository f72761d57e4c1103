// Makes the files that consist of words: texts, programs, object code. No word of a real file is in
// here: what makes a file as hard to compress as its namesake are the ten numbers of its recipe.
//
// A vocabulary is made up: the letters of a word form a chain in which each letter has its
// favourite successors, and rarer words tend to be longer. Then, until the file is full, either
//  - an earlier run of words is repeated, with all that separates them. The logarithm of the
//    distance is evenly spread, so that short and long windows find something; or
//  - a word is chosen by Zipf's law, now and then as a usual successor of the last one. A mark may
//    follow (punctuation, a digit, a capital), then a blank, or a line end and an indentation.
// In a binary file letters and marks are any bytes, nothing separates the words, and what would be
// a line end is a run of zeros.
//
// The letters set what a new word costs, vocabulary and successors what a known one costs (sorting
// methods gain most from them), the repeats what a match finder gains, and the marks are noise.
#include <bit>
#include <vector>

#include "catalog.h"
#include "random.h"

namespace corpus {

namespace {

struct Style {
    int letters;
    char firstLetter, filler; // of words, of indentations
    int longestIndent;
    std::string_view blank, lineEnd, marks; // no marks: any byte
};

constexpr std::string_view kMarks = ",.-)(;'=\"/:0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr Style kText = {26, 'a', ' ', 8, " ", "\n", kMarks};
constexpr Style kBinary = {256, '\0', '\0', 64, "", "", ""};
constexpr std::size_t kLineBytes = 70; // then the line ends with the word
constexpr int kRunTilt = 700;          // most repeated runs are short

class WordMaker {
public:
    WordMaker(const Style& style, const Recipe& recipe) : m_style(style), m_recipe(recipe) {
        for (int rank = 1; rank <= recipe.words; ++rank) {
            m_vocabulary.push_back(makeUpWord(rank));
        }
    }

    std::string make(std::size_t sizeBytes) {
        while (m_file.size() < sizeBytes) {
            if (!m_starts.empty() && m_random.chance(m_recipe.repeats)) {
                repeatRun();
            } else {
                appendWord();
            }
        }
        return m_file.substr(0, sizeBytes);
    }

private:
    std::string makeUpWord(int rank) {
        const auto octave = static_cast<int>(std::bit_width(static_cast<unsigned>(rank)));
        std::string word;
        for (int i = m_random.below(1 + octave * m_recipe.wordLength / 10); i >= 0; --i) {
            m_lastLetter = (7 * m_lastLetter + m_successor.draw(m_random)) % m_style.letters;
            word.push_back(static_cast<char>(m_style.firstLetter + m_lastLetter));
        }
        return word;
    }

    // Each rank has four usual successors: what a generator with one of four seeds draws.
    const std::string& chosenWord() {
        Random usual(static_cast<std::uint64_t>(m_lastRank * 4 + m_random.below(4)));
        m_lastRank = m_word.draw(m_random.chance(m_recipe.successors) ? usual : m_random);
        return m_vocabulary[static_cast<std::size_t>(m_lastRank) - 1];
    }

    char mark() {
        return m_style.marks.empty()
                   ? static_cast<char>(m_random.below(256))
                   : m_style.marks[static_cast<std::size_t>(m_mark.draw(m_random)) - 1];
    }

    void appendWord() {
        m_starts.push_back(m_file.size());
        m_file += chosenWord();
        if (m_random.chance(m_recipe.marks)) {
            m_file.push_back(mark());
        }
        if (m_random.chance(m_recipe.lineEnds)) {
            m_file += m_style.lineEnd;
            m_file.append(static_cast<std::size_t>(m_indent.draw(m_random)) - 1, m_style.filler);
        } else {
            const bool isFull = m_file.size() - m_file.rfind('\n') > kLineBytes;
            m_file += isFull ? m_style.lineEnd : m_style.blank;
        }
    }

    void repeatRun() {
        int distance = m_distance.draw(m_random);
        while (distance > std::ssize(m_starts)) {
            distance = m_distance.draw(m_random);
        }
        for (int left = m_run.draw(m_random); left > 0; --left) {
            const std::size_t from = m_starts[m_starts.size() - static_cast<std::size_t>(distance)];
            m_starts.push_back(m_file.size());
            m_file += m_file.substr(from, *(m_starts.end() - distance) - from);
        }
    }

    const Style m_style;
    const Recipe m_recipe;
    const Zipf m_successor{m_style.letters, m_recipe.letterTilt};
    const Zipf m_word{m_recipe.words, m_recipe.wordTilt};
    const Zipf m_mark{static_cast<int>(m_style.marks.size())};
    const Zipf m_indent{m_style.longestIndent};
    const Zipf m_run{m_recipe.runWords, kRunTilt};
    const Zipf m_distance{m_recipe.reachWords};
    Random m_random{1};
    std::vector<std::string> m_vocabulary;
    std::string m_file;
    std::vector<std::size_t> m_starts; // of the words in the file
    int m_lastLetter = 0, m_lastRank = 1;
};

} // namespace

std::string makeText(const FileKind& kind) {
    return WordMaker(kText, kind.recipe).make(kind.sizeBytes);
}

std::string makeBinary(const FileKind& kind) {
    return WordMaker(kBinary, kind.recipe).make(kind.sizeBytes);
}

} // namespace corpus

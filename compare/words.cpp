#include "words.h"

#include "usage.h"

namespace compare {

namespace {

class Splitter {
public:
    explicit Splitter(const std::string& text) : m_text(text) {}

    std::vector<std::string> words() {
        for (m_at = 0; m_at < m_text.size(); ++m_at) {
            take(m_text[m_at]);
        }
        if (m_quote) {
            throw UsageError("a quote (" + std::string(1, m_quote) +
                             ") is not closed in: " + m_text + "; close it");
        }
        endWord();
        return m_words;
    }

private:
    void take(char c) {
        const bool isLast = m_at + 1 == m_text.size();
        if (c == '\\' && m_quote != '\'' && !isLast && isEscaped(m_text[m_at + 1])) {
            add(m_text[++m_at]);
        } else if (m_quote ? c == m_quote : c == '\'' || c == '"') {
            m_quote = m_quote ? '\0' : c;
            m_hasWord = true; // also of ''
        } else if (!m_quote && (c == ' ' || c == '\t' || c == '\n')) {
            endWord();
        } else {
            add(c);
        }
    }
    // Between double quotes a backslash stands for itself before most characters.
    bool isEscaped(char c) const { return !m_quote || c == '"' || c == '\\'; }
    void add(char c) {
        m_word += c;
        m_hasWord = true;
    }
    void endWord() {
        if (m_hasWord) {
            m_words.push_back(m_word);
        }
        m_word.clear();
        m_hasWord = false;
    }

    const std::string& m_text;
    std::size_t m_at = 0;
    char m_quote = '\0';
    bool m_hasWord = false;
    std::string m_word;
    std::vector<std::string> m_words;
};

} // namespace

std::vector<std::string> splitWords(const std::string& text) {
    return Splitter(text).words();
}

} // namespace compare

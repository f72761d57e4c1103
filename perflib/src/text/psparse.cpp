#include "psparse.h"

namespace {

void makeQuotesSingle(psString& word) {
    int length = 0;
    for (int i = 0; i < word.length(); ++i) {
        word.at(length++) = word[i];
        i += word[i] == '"' ? 1 : 0;
    }
    word.resize(length);
}

} // namespace

void psParse::initParse(const psString& separators) {
    m_position = 0;
    m_quoteMode = false;
    m_separators.init();
    for (int i = 0; i < separators.length(); ++i) {
        if (separators[i] == '"') {
            m_quoteMode = true;
        } else {
            m_separators += separators[i];
        }
    }
}

bool psParse::isSeparator(int i) const {
    const char c = m_text[i];
    for (int s = 0; s < m_separators.length(); ++s) {
        if (m_separators[s] == c) {
            return true;
        }
    }
    return c == '\0';
}

// Moves to the next character that belongs to a word; false at the end of the text.
bool psParse::skipSeparators() {
    while (m_text[m_position] != '\0' && isSeparator(m_position)) {
        ++m_position;
    }
    return m_text[m_position] != '\0';
}

// The characters up to the next separator, where the position stays.
void psParse::takeWord(psString& word) {
    const int begin = m_position;
    while (!isSeparator(m_position)) {
        ++m_position;
    }
    word = m_text.substr(begin, m_position - begin);
}

// From the opening quote to behind the closing one. Doubled quotes are made single afterwards and
// in place, so that a word of a megabyte costs one copy.
void psParse::takeQuoted(psString& word) {
    const int begin = ++m_position;
    bool doubled = false;
    while (m_text[m_position] != '\0') {
        if (m_text[m_position] == '"') {
            if (m_text[m_position + 1] != '"') {
                break;
            }
            doubled = true;
            ++m_position;
        }
        ++m_position;
    }
    word = m_text.substr(begin, m_position - begin);
    if (m_text[m_position] == '"') {
        ++m_position;
    }
    if (doubled) {
        makeQuotesSingle(word);
    }
}

bool psParse::nextWord(psString& word) {
    if (m_quoteMode) {
        return nextWord_quote(word);
    }
    word = "";
    if (!skipSeparators()) {
        return false;
    }
    takeWord(word);
    return true;
}

bool psParse::nextWord_quote(psString& word) {
    word = "";
    if (!skipSeparators()) {
        return false;
    }
    if (m_text[m_position] == '"') {
        takeQuoted(word);
    } else {
        takeWord(word);
    }
    return true;
}

void psParse::parse(psStringList& words, const psString& separators) {
    initParse(separators);
    psString word;
    while (nextWord(word)) {
        words.append(word);
    }
}

void psParse::parse(psString& a, psString& b, const psString& separators) {
    initParse(separators);
    nextWord(a);
    nextWord(b);
}

void psParse::parse(psString& a, psString& b, psString& c, const psString& separators) {
    parse(a, b, separators);
    nextWord(c);
}

#pragma once

#include "psstring.h"

// Splits a text into words. A separator set that contains a double quote switches quote mode on
// (the quote itself is no separator): a word that begins with a double quote then runs to the
// next single one (or to the end of the text), two in a row standing for one, with separators
// inside kept.
class psParse {
public:
    explicit psParse(const psString& text) : m_text(text) {}

    void initParse(const psString& separators);
    bool isSeparator(int i) const; // the terminating zero byte always counts
    // False at the end of the text; word is cleared first.
    bool nextWord(psString& word);

    void parse(psStringList& words, const psString& separators);
    void parse(psString& a, psString& b, const psString& separators);
    void parse(psString& a, psString& b, psString& c, const psString& separators);

private:
    bool nextWord_quote(psString& word);
    bool skipSeparators();
    void takeWord(psString& word);
    void takeQuoted(psString& word);

    psString m_text;
    psString m_separators;
    int m_position = 0;
    bool m_quoteMode = false;
};

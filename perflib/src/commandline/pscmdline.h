#pragma once

#include "psstring.h"

// The command line as an ordered list of keys with their arguments. A word is a key when it has
// at least two characters and begins with "-" or "/"; its second character is the key, the rest
// is the argument. A word that follows a key and is no key itself is the key's argument when it
// has none attached, and is lost otherwise.

// One key of the command line; a blank key stands for no key.
class psCommandKey {
public:
    static bool isKeyWord(const psString& word);

    // False (nothing changed) when word is no key. The argument is the rest of word; where that
    // is empty or a modifier ("+", "-" or "=") alone, next is added to it.
    bool setArg(const psString& word, const psString& next);
    // False (arg untouched) when this is another key.
    bool getArg(char key, psString& arg) const;
    char key() const { return m_key; }
    const psString& arg() const { return m_arg; }

private:
    char m_key = ' ';
    psString m_arg;
};

class psCommandList : public psList<psCommandKey> {
public:
    // With one leading entry without a key; skip it when applying the list.
    psCommandList();

    // Add at the end: words as the shell split them, or a text that is split here at blanks,
    // tabs, line ends and semicolons, with double quotes around a word that contains such.
    void setArgs(int argc, const char* const* argv);
    void setArgs(const char* text);
    void setArg(char key, const psString& value);

    // Insert before position.
    void insertArgs(const psString& text, iterator position);
    void insertArgs(const psStringList& words, iterator position);
    // False when word is no key; it is dropped then.
    bool insertArg(const psString& word, const psString& next, iterator position);
    // The words of a text file. False (and reported) when it cannot be read.
    bool insertFromFile(const psString& file, iterator position);

    // Replaces every key "@" by the words of the file that it names. Those are not looked
    // through again, so that argument files cannot include each other without end. False when a
    // file could not be read (reported; the others are in).
    bool expandFiles();

    bool isKey(char key) const;
    // The argument of the first entry with the key; false (arg untouched) when there is none.
    bool getArg(char key, psString& arg) const;
};

// The first line, at most 1023 characters, of the program's configuration file: the program's
// title with ".cfg", in the current directory or else in the program's. file receives the name
// tried last. False (not reported, text untouched) when there is none.
bool psReadCfgFile(const psString& programPath, psString& text, psString& file);

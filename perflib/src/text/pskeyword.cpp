// Keyword tables: names of enumerations and flags, typed by the user in any abbreviation.
#include "psstring.h"

namespace {

// Index of the first name that the text fits, -1 when there is none.
int fittingName(const psString& text, const psString* names, int count, int skip) {
    for (int i = 0; i < count; ++i) {
        if (fitString(text, names[i], skip)) {
            return i;
        }
    }
    return -1;
}

} // namespace

bool fitString(const psString& text, const psString& name, int skip) {
    const psString word = text.toLower();
    const psString whole = name.toLower();
    return whole.startsWith(word) || whole.substr(skip).startsWith(word);
}

psString enumString(int value, const int* values, const psString* names, int count) {
    for (int i = 0; i < count; ++i) {
        if (values[i] == value) {
            return names[i];
        }
    }
    return psText(value);
}

int enumValue(const psString& text, const int* values, const psString* names, int count, int skip) {
    const int i = fittingName(text, names, count, skip);
    text.setBad(i < 0);
    return i < 0 ? 0 : values[i];
}

psString flagString(int value, const int* flags, const psString* names, int count) {
    psString joined;
    bool any = false;
    for (int i = 0; i < count; ++i) {
        if ((flags[i] & value) != 0) {
            joined += any ? "|" : "";
            joined += names[i];
            any = true;
        }
    }
    return any ? joined : psText(value);
}

int flagValue(const psString& text, const int* flags, const psString* names, int count, int skip) {
    psStringList words;
    text.parse(words, "|,; ");
    text.setBad(false);
    int value = 0;
    for (const psString& word : words) {
        const int i = fittingName(word, names, count, skip);
        if (i < 0) {
            text.setBad(true);
        } else {
            value |= flags[i];
        }
    }
    return value;
}

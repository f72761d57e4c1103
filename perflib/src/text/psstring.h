#pragma once

#include "pslist.h"
#include "psobject.h"

class psString;
using psStringList = psList<psString>;

// The harness's byte string. The buffer always holds a zero byte after the text and has
// (length rounded down to a multiple of 16) + 16 bytes. No operation throws; a failed allocation
// leaves an empty string. Copies are deep, moves take the buffer. A default-constructed string
// owns no buffer and is usable from any static initialiser.
class psString : public psObject {
public:
    static constexpr int npos = -1;

    constexpr psString() = default;
    psString(const char* text); // null counts as ""
    psString(const char* text, int length);
    explicit psString(char c);
    psString(const psString& other);
    psString(psString&& other) noexcept;
    ~psString() override;
    psString& operator=(const psString& other);
    psString& operator=(psString&& other) noexcept;
    psString& operator=(const char* text);

    psString& assign(const char* text);
    psString& assign(char c);
    psString& assign(const psString& other);
    void init(); // empty and without a buffer; the old buffer is released

    const char* c_str() const { return m_data ? m_data : ""; }
    int length() const { return m_length; }
    int capacity() const { return m_capacity; }
    bool empty() const { return m_length == 0; }
    char operator[](int i) const { return m_data ? m_data[i] : '\0'; } // i in 0..length()
    char& at(int i) { return m_data[i]; }                              // i in 0..length()-1

    // The flag of the last conversion from this string; cleared by assignment and by the next
    // conversion attempt.
    bool isBad() const { return m_bad; }
    void setBad(bool bad) const { m_bad = bad; }

    void allocate(int n); // n zero bytes of text; negative counts as 0
    void growBy(int n);   // n zero bytes more, the text kept
    void resize(int n, char fill = ' ');
    psString substr(int pos, int count) const;
    psString substr(int pos) const;
    psString& append(const char* text, int length);
    psString& operator+=(const psString& other);
    psString& operator+=(const char* text);
    psString& operator+=(char c);

    // Positions in bytes, npos when absent.
    int find(const psString& s, int from = 0) const;
    int rfind(const psString& s) const;
    bool contains(const psString& s) const { return find(s) != npos; }
    bool startsWith(const psString& s) const;
    // Signed bytes; -1 or 1 at the first difference, else the difference of the lengths.
    int compare(const psString& s) const;
    bool operator==(const psString& s) const;
    bool operator==(const char* s) const;

    void trim();
    psString trimmed() const;
    psString toLower() const;
    psString getFileName() const;
    psString getFileDir() const;
    psString getFileTitle() const;
    static const char* prefixI64() { return "L"; }

    // Appends the words of this string (see psParse).
    void parse(psStringList& words, const psString& separators) const;
    // The first two or three words; missing ones become empty.
    void parse(psString& a, psString& b, const psString& separators) const;
    void parse(psString& a, psString& b, psString& c, const psString& separators) const;

private:
    static int capacityFor(int length) { return length / 16 * 16 + 16; }
    void swapBuffer(psString& other);

    char* m_data = nullptr; // calloc'ed
    int m_length = 0;
    int m_capacity = 0;
    mutable bool m_bad = false;
};

psString operator+(const psString& a, const psString& b);
psString operator+(const char* a, const psString& b);
psString operator+(const psString& a, const char* b);

// printf into a string; the result may have any length.
[[gnu::format(printf, 1, 2)]] psString psFormat(const char* format, ...);

// Writers append the value's text: int "%d", 64-bit "%Ld", double and float "%.3g", bool
// "yes"/"no", pointers in upper-case hexadecimal or "NULL".
psString& operator<<(psString& s, const char* text);
psString& operator<<(psString& s, const psString& text);
psString& operator<<(psString& s, int value);
psString& operator<<(psString& s, long long value);
psString& operator<<(psString& s, unsigned long long value);
psString& operator<<(psString& s, double value);
psString& operator<<(psString& s, float value);
psString& operator<<(psString& s, bool value);
psString& operator<<(psString& s, char value);
psString& operator<<(psString& s, const void* value);

// Readers convert the whole string and set or clear its flag (psString::isBad). An empty text
// leaves a number unchanged and the flag clear, so that an empty option value keeps its default;
// for a bool it is an error.
void operator<<(int& value, const psString& s);
void operator<<(long long& value, const psString& s);
void operator<<(unsigned long long& value, const psString& s);
void operator<<(double& value, const psString& s);
void operator<<(float& value, const psString& s);
void operator<<(bool& value, const psString& s);
void operator<<(void*& value, const psString& s);

// Whether the readers above take all of the text as a number of the second argument's type (whole
// ones decimal, or hexadecimal after "0x"): they also take "16k" as 16, "1e6" as 1 and "5,5" as 5
// and let what does not fit wrap, which is no use to a person.
bool psIsNumber(const psString& s, int);
bool psIsNumber(const psString& s, long long);
bool psIsNumber(const psString& s, double);

// value as text, by the writers above.
template <class T> psString psText(const T& value) {
    psString s;
    s << value;
    return s;
}

// Keyword tables: parallel arrays of count values and names. A text fits a name when it is a
// case-insensitive prefix of it, or of it without its first skip characters; the first fitting
// entry wins. A text that fits none sets its own flag and gives 0.
bool fitString(const psString& text, const psString& name, int skip = 0);
psString enumString(int value, const int* values, const psString* names, int count);
int enumValue(const psString& text, const int* values, const psString* names, int count,
              int skip = 0);
psString flagString(int value, const int* flags, const psString* names, int count);
int flagValue(const psString& text, const int* flags, const psString* names, int count,
              int skip = 0);

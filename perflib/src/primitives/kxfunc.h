#pragma once

#include "kxtype.h"

// Which argument of a primitive a question is about.
enum kxArg : int { kxSrc = 1, kxSrc2 = 2, kxDst = 4, kxDst2 = 8 };

// Reads the name of a primitive: prefix, base name, "_", type tokens, "_", descriptor letters
// (ntksMulC_16s_C3R). A value object: every question parses the name again.
class kxFunc {
public:
    kxFunc() = default;
    kxFunc(const psString& name) : m_name(name) {}
    kxFunc(const char* name) : m_name(name) {}
    virtual ~kxFunc() = default;

    const psString& name() const { return m_name; }
    psString prefix() const; // "ntks", "ntki" or empty
    psString baseName() const;
    psString typeName() const;  // the type tokens as written
    psString descrName() const; // the descriptor letters
    void parseFunction(psString& base, psString& types, psString& descr) const;
    // The type tokens apart: a missing one is the one before it, all are empty without any.
    void parseFunction(psString& base, psString& t1, psString& t2, psString& t3,
                       psString& descr) const;

    kxType type(int n) const; // of the n-th token as parseFunction tells them apart, n = 1..3
    kxType type(kxArg arg) const;
    kxType srcType() const { return type(kxSrc); }
    kxType src2Type() const { return type(kxSrc2); }
    kxType dstType() const { return type(kxDst); }
    kxType dst2Type() const { return type(kxDst2); }
    void getTypes(kxType& src, kxType& src2, kxType& dst, kxType& dst2) const;
    // The destination type that the base name implies whatever the tokens say (the magnitude of
    // complex data is real); kxUndef when it implies none.
    kxType typeFromBase() const;
    // Called by getTypes with the types that the tokens give, to correct them for base names
    // whose arguments do not follow the tokens.
    virtual void updateTypes(kxType& src, kxType& src2, kxType& dst, kxType& dst2) const;

    bool inplace() const { return descrName().contains("I"); }
    bool mask() const { return descrName().contains("M"); }
    bool scale() const { return descrName().contains("Sfs"); }
    bool roi() const { return descrName().contains("R"); }

    // Pixel layout, written in the descriptor as "C3" (interleaved), "P3" (planes) or "AC4"
    // (interleaved, the last channel untouched); two such marks are source and destination. The
    // n-th mark is n = 1 or 2. Without a mark there is one channel.
    psString channelsName(int n) const; // the mark, such as "AC4"
    psString channelsName(kxArg arg) const;
    int channels(int n) const;
    int channels(kxArg arg) const;
    int srcChannels() const { return channels(kxSrc); }
    int dstChannels() const { return channels(kxDst); }
    void getChannels(int& src, int& dst) const;
    bool plane(int n) const;
    bool plane(kxArg arg) const;
    bool alpha(int n) const;
    bool alpha(kxArg arg) const;
    bool coi() const; // works on one channel of interest: a "C" without a number
    // Called with what the marks give, for derived descriptors to correct.
    virtual void updateChannels(int& /*src*/, int& /*dst*/) const {}
    virtual void updatePlanes(bool& /*src*/, bool& /*dst*/) const {}

    // Order by base name, then types, then descriptor: negative, 0 or positive.
    int compare(const kxFunc& other) const;
    // Type tokens one by one by their codes (unsigned, signed, floating, complex; then by width).
    static int compareTypes(const psString& a, const psString& b);
    static int compareDescr(const psString& a, const psString& b);

private:
    psString m_name;
};

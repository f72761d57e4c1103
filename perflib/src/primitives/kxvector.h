#pragma once

#include "kxfunc.h"
#include "psobject.h"
#include "psstring.h"

// Patterns to fill a vector with; a and b are the two numbers given with the mode.
enum SetMode : int {
    SET_NONE = 0,     // leaves the data as they are
    SET_CONST = 1,    // every element a (complex: a, b)
    SET_SEQUENCE = 2, // a, a + b, a + 2b, ...
    SET_JAEHNE = 3,   // the chirp of magnitude a
    SET_MIN = 4,      // the type's minimum
    SET_MAX = 5,      // the type's maximum
    SET_RANDOM = 6,   // random in [a, b]; both 0.0: over the type's default range
};

// A typed, aligned array of test data. Its type is set first, then createVector gives it data,
// which it owns; deleteVector, a new type and the destructor release them. An allocation that
// fails is reported and leaves the vector empty.
class kxVector : public psObject {
public:
    constexpr kxVector() = default;
    explicit kxVector(kxType type) { init(type); }
    kxVector(const kxFunc& function, int n) { init(function, n); }
    kxVector(const kxFunc& function, kxArg arg) { init(function, arg); }
    ~kxVector() override;
    kxVector(const kxVector&) = delete;
    kxVector& operator=(const kxVector&) = delete;

    // Empty, of this type: given, of a function's n-th type token (n = 1..3), of its argument.
    void init(kxType type);
    void init(const kxFunc& function, int n) { init(function.type(n)); }
    void init(const kxFunc& function, kxArg arg) { init(function.type(arg)); }

    // len elements, replacing what there was. n counts the vector alignment steps by which the
    // data are misaligned when the session asks for that (psAllocateVector); 0: one step by byte,
    // or one for each byte of an element by element. Dumps find the vector by the tag: the vector
    // itself unless another one is given.
    bool allocateVector(int len, int n = 0, void* tag = nullptr); // contents undefined
    bool createVector(int len, int n = 0);                        // contents zeroed
    bool createVector(int len, int n, void* tag);
    bool createVector(int len, SetMode mode, double a, double b);
    bool createVectorExt(int len, int n, SetMode mode, double a, double b);
    void deleteVector();

    kxType type() const { return m_type; }
    int size() const { return m_length; }                         // elements
    int item() const { return kxTypeBytes(m_type); }              // bytes of one element
    int objectSize() const override { return m_length * item(); } // bytes
    psString objectInfo() const override;                         // "Vector 8u len=16"
    void* data() { return m_data; }                               // null when empty
    const void* data() const { return m_data; }
    void* getPointerAt(int i); // i in 0..size()
    const void* getPointerAt(int i) const;

    bool reserveCopy() override;
    void setReservedCopy() override;
    void deleteReservedCopy() override;

    // Fills of the whole vector, and of len elements of its type anywhere (setData..., and
    // setVectorJaehne). Integers are cut towards zero and end at their type's ends, except in
    // sequences, where they wrap around.
    void setConst(double re, double im = 0.0);
    void setDataConst(void* data, int len, double re, double im = 0.0) const;
    void setRandom(); // over the type's default range, minValue()..maxValue()
    void setRandom(double low, double high);
    void setRandom(double low, double high, unsigned seed); // leaves m_seed alone
    void setDataRandom(void* data, int len, double low, double high) const;
    void setDataRandom(void* data, int len, double low, double high, unsigned seed) const;
    void setSequence(double start, double step, double startIm = 0.0, double stepIm = 0.0);
    void setDataSequence(void* data, int len, double start, double step, double startIm = 0.0,
                         double stepIm = 0.0) const;
    // A sine whose frequency rises along the vector, of at most half the type's range, about 0 or
    // the middle of an unsigned range. A negative magnitude fills nothing.
    void setJaehne(double magnitude);
    void setVectorJaehne(void* data, int len, double magnitude) const;
    // Cuts the magnitude to half the range and tells the offset; false for a negative magnitude.
    bool updateJaehneMagn(double& magnitude, double& offset) const;
    void setMinValue();
    void setMaxValue();
    void setVector(SetMode mode, double a, double b);
    void setData(void* data, int len, SetMode mode, double a, double b) const;
    void setIndex(int i, SetMode mode, double a, double b); // one element, i in 0..size()-1

    // An element as numbers; im is 0 for a real type.
    void getElement(const void* element, double& re, double& im) const;
    void getIndex(int i, double& re, double& im) const;

    // Ends of the type's values in the fills; 0 for an undefined type.
    double minValue() const { return getMinValue(m_type); }
    double maxValue() const { return getMaxValue(m_type); }
    static double getMinValue(kxType type);
    static double getMaxValue(kxType type);
    static double getMinAbsValue(kxType type); // the smallest magnitude above 0

    // Every element in columns, without line ends.
    psString getString() const { return getDataString(m_type, m_data, m_length); }
    static psString getDataString(kxType type, const void* data, int len);
    static psString getByteString(const void* data, int bytes);

    // Seed of the next random fill. Each fill moves it on, so that the vectors of a test differ;
    // a test that starts sets it to defaultSeed, so that its runs do not.
    static constexpr unsigned defaultSeed = 7;
    static unsigned m_seed;

private:
    bool allocationFailure(long long bytes) const;
    bool ownsBlock() const;

    kxType m_type = kxUndef;
    int m_length = 0;
    void* m_data = nullptr;
    void* m_tag = nullptr;
    void* m_reserved = nullptr;
};

#pragma once

#include <initializer_list>
#include <climits>
#include <optional>
#include <vector>

#include "kxdc.h"

// The bases of the compression benchmarks: what a combination allocates, reads and shows.

// Whether a preparation call succeeded; a status that is not 0 is printed.
bool passed(int status, const char* name);

// A length that a call of the library left, and those that are possible.
struct dcLength {
    const char* what; // "destination length"
    long long value;
    long long least, most;
};
using dcLengths = std::vector<dcLength>;
// The first that is not possible is printed, and fails the test. Without this, a length of -1
// would become a ratio, or the place where a preparation goes on to write.
bool arePossible(const dcLengths& lengths, const psString& function);
// The same for the size of a state or a block.
bool isSize(long long bytes, const char* function);

// Vectors of so many elements, zeroed. Here and below: false when there is no memory.
bool createVectors(std::initializer_list<kxVector*> vectors, int elements);
// A vector of bytes without a type: see psTest::allocate.
bool createBlock(Ntk8u*& block, int bytes, int misalignment);
// An element of a block that the user had misaligned.
template <class T> struct [[gnu::packed, gnu::may_alias]] dcElement {
    T value;
};
// A block for the library's state, aligned.
bool createState(Ntk8u*& state, int bytes);
// Releases the vectors, then the blocks and states, in their order; pointers become null.
void release(std::initializer_list<kxVector*> vectors, std::initializer_list<Ntk8u**> blocks);

// A benchmark that compresses or decompresses.
class dcTest : public kxTest {
public:
    using kxTest::kxTest;
    psString getUnit() override { return "e"; }
    void parmsToOstrm() override;
    void addValues(psNamedValues& values) override;
    bool hasPossibleResult() override;
    void addKeys(psNamedValues& values) override;

protected:
    // Uncompressed bytes of the combination, and where they come from (may be empty).
    virtual long long length() const = 0;
    virtual psString inputName() const = 0;
    // Tells combinations of one input apart; may be null.
    virtual const psParameter* variant() const;
    virtual std::optional<double> ratio() const; // uncompressed to compressed
    virtual dcLengths lengthsLeft() const = 0;   // by the measured calls

    // False (printed) when the value is not within 1 to largest.
    static bool isWithin(const psIterator_NSC<int>& parm, int largest);

private:
    bool m_isPossible = true; // what the last measurement left: else it has no ratio
};

// A benchmark on the first bytes of a corpus file, at each of the lengths of g_codeLen that gives
// other bytes than the length before it.
class dcFileTest : public dcTest {
public:
    using dcTest::dcTest;
    bool canStart() override; // registers the length and the file
    bool initData() override; // the four steps below, until one fails

protected:
    virtual psIterator_NSC<int>& lengthParm() { return g_codeLen; }
    virtual int largestLength() const;
    virtual bool createBuffers() = 0;
    virtual int readFile() = 0; // keeps and returns the bytes read: readInto(the source)
    virtual bool prepare() = 0; // the library's state and the decoder's input

    virtual int readInto(void* buffer) { return readCodeFile(buffer); }
    psString inputName() const override { return g_codeFile.valueString(); }
};

// A benchmark on one block of a corpus file: its "CodeLength" is a parameter of the family's own,
// with one value. A file shorter than that is measured whole.
class dcBlockTest : public dcFileTest {
public:
    using dcFileTest::dcFileTest;
    void parmsToOstrm() override; // length and file alone

protected:
    psIterator_NSC<int>& lengthParm() override = 0;
    int readInto(void* buffer) override;
};

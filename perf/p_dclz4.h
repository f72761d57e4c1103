#pragma once

#include <ntkdc.h>

#include "dctest.h"

// What the LZ4 tests have in common: the file, its coded form, and the encoders' tables.
class TimdcLZ4File : public dcFileTest {
public:
    using dcFileTest::dcFileTest;

protected:
    long long length() const override;
    int readFile() override;
};

// LZ4: encoding of a whole buffer, and decoding of a buffer that was encoded once.
class TimdcLZ4 : public TimdcLZ4File {
public:
    using TimdcLZ4File::TimdcLZ4File;
    bool canStart() override;
    void flushData() override;
    double getDivisor() override;

protected:
    bool createBuffers() override;
    bool prepare() override;
    std::optional<double> ratio() const override;
    dcLengths lengthsLeft() const override;

private:
    bool m_isEncoder = false;
};

// LZ4 with a dictionary: encoding of the second half of the data after the first.
class TimdcLZ4Dict : public TimdcLZ4File {
public:
    using TimdcLZ4File::TimdcLZ4File;
    bool canStart() override;
    void flushData() override;
    double getDivisor() override;

protected:
    bool createBuffers() override;
    bool prepare() override;
    const psParameter* variant() const override;
    std::optional<double> ratio() const override;
    dcLengths lengthsLeft() const override;
};

// Where the dictionary of the measured call lies.
enum dictType_t : int {
    DICT_NONE = 0,     // "N"
    DICT_INTERNAL = 1, // "I": just before the encoded part, in the same buffer
    DICT_EXTERNAL = 2, // "E": the same bytes in a buffer of their own
};

// The state that the six tests share: the generated functions have no test to ask. It keeps its
// last values between tests; every initData() sets all that its tests read.
namespace dclz4 {
extern kxVector fileBuf, comprBuf, decomprBuf;
extern kxVector dictBuf; // a copy of fileBuf
extern int fileLen;      // bytes read from the file
extern Ntk8u* pHashTable;
extern Ntk8u* pHashTableHC;
extern Ntk8u* pChainTableHC;
extern Ntk8u* hashTables[2]; // of the HC encoder: the hash table, then the chain table
extern Ntk8u* pEncodeSrc;
extern Ntk8u* pEncodeDst;
extern int encodeSrcLen, encodeDstLen;
extern Ntk8u* pDecodeSrc;
extern Ntk8u* pDecodeDst;
extern int decodeSrcLen, decodeDstLen;
extern int srcIdx; // position of the encoded part in the source buffer
extern Ntk8u* pDict;
extern int dictLen;
extern psMapIterator<dictType_t> dictType; // the parameter "dict"
} // namespace dclz4

#pragma once

#include <ntkdc.h>

#include "dctest.h"

// Huffman coding of bzip2 blocks: encoding and decoding of a file's bytes as 16-bit symbols.
class Timdcbz2Huff : public dcBlockTest {
public:
    using dcBlockTest::dcBlockTest;
    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override;

protected:
    long long length() const override;
    psIterator_NSC<int>& lengthParm() override;
    int largestLength() const override;
    bool createBuffers() override;
    int readFile() override;
    bool prepare() override;
    dcLengths lengthsLeft() const override;
};

// The state that both tests share: the generated functions have no test to ask. It keeps its last
// values between tests; every initData() sets all that its test reads.
namespace dcbz2huff {
extern bool m_bEncode; // the running test is the encoder's
extern kxVector src8u; // bytes of the file
extern kxVector src;   // the symbols; the decoder writes there too
extern kxVector dst;   // context, coded symbols, flushed bits
extern Ntk8u* pSrc8u;
extern Ntk16u* pSrc;
extern Ntk8u* pDst;
extern Ntk8u* pDst1;     // behind the context, where the decoder starts
extern int srcLen;       // bytes read, and symbols
extern int len, dstLen;  // in/out arguments of the calls
extern int srcLen1;      // bytes of dst behind the context
extern int tmpLen;       // bytes of the context, as it was packed
extern Ntk32u pCode;     // pending bits of the calls, at the top,
extern int pCodeLenBits; // and their number
extern Ntk32u tmpCode;   // the two as they are behind the context
extern int tmpCodeLen;
extern int freqTable[258];
extern Ntk8u* pEncodeHuffState;
extern Ntk8u* pDecodeHuffState;
extern psIterator<int> dataLength; // the family's own parameter "CodeLength"
} // namespace dcbz2huff

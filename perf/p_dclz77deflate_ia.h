#pragma once

#include <array>

#include <ntkdc.h>

#include "dctest.h"

// Deflate: the match search, the Huffman coding of what it finds, and the inflating of the result.
class Timdc_Deflate : public dcBlockTest {
public:
    using dcBlockTest::dcBlockTest;
    bool canStart() override;
    void flushData() override;
    double getDivisor() override;
    void parmsToOstrm() override;

protected:
    long long length() const override;
    const psParameter* variant() const override;
    psIterator_NSC<int>& lengthParm() override;
    bool createBuffers() override;
    int readFile() override;
    bool prepare() override;
    dcLengths lengthsLeft() const override;
};

// The state that the three tests share: the generated functions have no test to ask. It keeps its
// last values between tests; every initData() sets all that its tests read.
namespace dcdeflate {
// The buffers are null while there are no data.
extern Ntk8u* pData; // the file, and what the inflate test makes
extern Ntk8u* pDist; // distances of the match search, 16 bits each
extern Ntk8u* pHuff; // the coded stream
extern Ntk8u* pLit;  // literals and lengths of the match search
extern Ntk8u* pHashHead;
extern Ntk8u* pHashPrev;
extern Ntk32u dataLen; // bytes read from the file
extern Ntk32u distLen; // entries of the match search
extern Ntk32u huffLen; // bytes of the coded stream
// Arguments of the calls.
extern const Ntk8u* pSrc;
extern Ntk8u* pDst;
extern int srcLen, dstLen;
extern int srcIdx, dstIdx;
extern Ntk32u code; // pending bits
extern int codeLen; // their number
extern int mode;    // of the inflater: which part of the stream comes next
extern NtksInflateState inflateState;
// The fixed codes of RFC 1951, 3.2.6, each with its bits reversed.
extern const std::array<NtkHuffCode, 288> pLitHuffCodes;
extern const std::array<NtkHuffCode, 30> pDistHuffCodes;
extern Ntk32u pLitFreqTable[286];
extern Ntk32u pDistFreqTable[30];
extern psIterator_NSC<int> dataLength; // the parameter "CodeLength" of this family alone
extern psIterator_NSC<int> comprLevel; // the parameter "comprLevel"
} // namespace dcdeflate

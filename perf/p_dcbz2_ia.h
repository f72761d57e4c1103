#pragma once

#include <ntkdc.h>

#include "dctest.h"

// The stages of bzip2's compression, forward and inverse, each on what the stages before it make
// of a file.
class Timdc_BZ2 : public dcBlockTest {
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
    int largestLength() const override;
    bool createBuffers() override;
    int readFile() override;
    bool prepare() override; // the stages in their order, below
    dcLengths lengthsLeft() const override;

private:
    bool prepareBwt();
    bool prepareMtf();

    bool m_isInverse = false;    // gets the buffers and states of the inverse stages
    bool m_isSelectSort = false; // the parameter "hint"
};

// The state that the thirteen tests share: the generated functions have no test to ask. It keeps
// its last values between tests; every initData() sets all that its tests read.
namespace dcbz2 {
// Of maxLen bytes each: what a stage reads, and where the stage before it writes.
extern Ntk8u* pSrcRLE;  // the file
extern Ntk8u* pSrcDict; // run-length coded; then reduced in place
extern Ntk8u* pSrcBWT;  // reduced
extern Ntk8u* pSrcMTF;  // transformed
extern Ntk8u* pSrcZ1Z2; // move-to-front positions
extern Ntk8u* pDstZ1Z2; // 16-bit symbols
extern int len;         // bytes read from the file
extern int srcRLELen, srcDictLen, srcBWTLen, srcMTFLen, srcZ1Z2Len;
extern int dstZ1Z2Len; // in symbols
extern int maxLen;
extern Ntk8u* pRLEState;
extern Ntk8u* pBWTBuff;
extern Ntk8u* pMTFState;
extern Ntk8u* pEncodeHuffState;
extern Ntk8u inUse[256];
extern int sizeDictionary;
extern int freqTable[258];
extern int idx; // row of the text among its sorted rotations
// The arguments of the measured call.
extern Ntk8u* pSrc;
extern Ntk8u* pDst;
extern int srcLen, dstLen;
extern psIterator<int> dataLength; // "CodeLength", of this family alone
extern psMapIterator<NtkBWTSortAlgorithmHint> hint;
} // namespace dcbz2

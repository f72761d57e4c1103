#pragma once

#include <ntkdc.h>

#include "dctest.h"

// LZSS: streaming encoding of a buffer, and decoding of a buffer that was encoded once.
class TimdcLZSS : public dcFileTest {
public:
    using dcFileTest::dcFileTest;
    bool canStart() override;
    void flushData() override;
    double getDivisor() override;

protected:
    long long length() const override;
    std::optional<double> ratio() const override; // of the complete stream of the data alone
    dcLengths lengthsLeft() const override;
    bool createBuffers() override;
    int readFile() override;
    bool prepare() override;

private:
    bool m_isEncoder = false;
    mutable std::optional<Ntk32u> m_codeLen; // of the combination, made when first asked for
};

// The state that the two tests share: the generated functions have no test to ask. It keeps its
// last values between tests; every initData() sets all that its tests read.
namespace dclzss {
extern kxVector src, dst; // data and compressed data, whichever is made of the other
extern Ntk8u* pSrc;       // moved on by the calls
extern Ntk8u* pDst;
extern int srcLen, dstLen; // what is left
extern int len;            // bytes read from the file
extern Ntk32u maxSrcLen, maxDstLen;
extern Ntk8u* pState; // of the encoder, then of the decoder
} // namespace dclzss

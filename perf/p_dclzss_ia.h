#pragma once

#include <ntkdc.h>

#include <kx.h>

// LZSS: streaming encoding of a buffer, and decoding of a buffer that was encoded once.
class TimdcLZSS : public kxTest {
public:
    using kxTest::kxTest;
    ~TimdcLZSS() override = default;
    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override;
    psString getUnit() override { return "e"; }
    void parmsToOstrm() override;
    void parmsToCstrm() override;

private:
    bool createState();
    bool encodeForDecoder();
    psString ratioText() const; // "-" where nothing was written

    bool m_isEncoder = false;
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

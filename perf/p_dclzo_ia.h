#pragma once

#include <ntkdc.h>

#include <kx.h>

// LZO: encoding of a whole buffer, and decoding of a buffer that was encoded once.
class TimdcLZO : public kxTest {
public:
    using kxTest::kxTest;
    ~TimdcLZO() override = default;
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
    double ratio() const;

    bool m_isEncoder = false;
};

// The state that the three tests share: the generated functions have no test to ask. It keeps its
// last values between tests; every initData() sets all that its tests read.
namespace dclzo {
extern kxVector src, dst; // data and compressed data, whichever is made of the other
extern Ntk8u* pSrc;
extern Ntk8u* pDst;
extern Ntk32u srcLen, dstLen;
extern int len; // bytes read from the file
extern Ntk32u maxSrcLen, maxDstLen;
extern Ntk8u* pState;
extern psMapIterator<NtkLZOMethod> method; // the parameter "method"
} // namespace dclzo

#pragma once

#include <ntkdc.h>

#include "dctest.h"

// LZO: encoding of a whole buffer, and decoding of a buffer that was encoded once.
class TimdcLZO : public dcFileTest {
public:
    using dcFileTest::dcFileTest;
    bool canStart() override;
    void flushData() override;
    double getDivisor() override;

protected:
    long long length() const override;
    const psParameter* variant() const override;
    std::optional<double> ratio() const override;
    dcLengths lengthsLeft() const override;
    bool createBuffers() override;
    int readFile() override;
    bool prepare() override;

private:
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

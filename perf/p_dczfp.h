#pragma once

#include <ntkdc.h>

#include <kx.h>

// ZFP coding of a whole field, block by block: what the two tests have in common.
class TimdcZfp444 : public kxTest {
public:
    using kxTest::kxTest;
    ~TimdcZfp444() override = default;
    bool canStart() override;
    bool initData() override;
    void flushData() override;
    psString getUnit() override { return "e"; }
    void parmsToOstrm() override;
    void parmsToCstrm() override;
};

class TimdcZfpEncode444 : public TimdcZfp444 {
public:
    using TimdcZfp444::TimdcZfp444;
    ~TimdcZfpEncode444() override = default;
    double getDivisor() override;
};

class TimdcZfpDecode444 : public TimdcZfp444 {
public:
    using TimdcZfp444::TimdcZfp444;
    ~TimdcZfpDecode444() override = default;
    double getDivisor() override;
};

// The state that the two tests share.
namespace dczfp {
constexpr int sideLen = 32;                           // of the cubic field, in values
constexpr int fieldLen = sideLen * sideLen * sideLen; // values
extern kxVector fieldBuf, comprBuf, decomprBuf;
extern Ntk8u* pState;        // of the stream that a call writes or reads
extern bool size_xyz;        // the field has its three sizes: it stands in its buffer
extern int comprLen;         // bytes of the coded field
extern psIterator<int> rate; // the parameter "rate": bits per value
} // namespace dczfp

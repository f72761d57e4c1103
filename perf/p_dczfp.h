#pragma once

#include <ntkdc.h>

#include "dctest.h"

// ZFP coding of a whole field, block by block: what the two tests have in common.
class TimdcZfp444 : public dcTest {
public:
    using dcTest::dcTest;
    bool canStart() override;
    bool initData() override;
    void flushData() override;

protected:
    long long length() const override;
    psString inputName() const override;
    const psParameter* variant() const override;
    std::optional<double> ratio() const override;
    dcLengths lengthsLeft() const override;
};

class TimdcZfpEncode444 : public TimdcZfp444 {
public:
    using TimdcZfp444::TimdcZfp444;
    double getDivisor() override;
};

class TimdcZfpDecode444 : public TimdcZfp444 {
public:
    using TimdcZfp444::TimdcZfp444;
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

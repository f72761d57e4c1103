#pragma once

#include <ntkdc.h>

#include <kx.h>

// The running checksums over random bytes.
class TimdcChecksum : public kxTest {
public:
    using kxTest::kxTest;
    ~TimdcChecksum() override = default;
    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override;
    psString getUnit() override { return "e"; }
};

// The state that the four tests share.
namespace dcchecksum {
extern kxVector src;
extern Ntk8u* pSrc;
extern int srcLen;
// Deliberate: every call continues the checksum of the call before it, of whichever test. The time
// of a call does not depend on the value, and so no init body adds to what is timed.
extern Ntk32u checksum;
} // namespace dcchecksum

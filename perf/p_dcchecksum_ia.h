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
// Every call goes on from the value that the call before it left, of whichever test: meant so.
extern Ntk32u checksum;
} // namespace dcchecksum

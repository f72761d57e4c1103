#include "p_dcchecksum_ia.h"

#include "dchooks.h"
#include "kxtiming.h"
#include "kxdc.h"

namespace dcchecksum {
kxVector src;
Ntk8u* pSrc = nullptr;
int srcLen = 0;
Ntk32u checksum = 0;
} // namespace dcchecksum
using namespace dcchecksum;

bool TimdcChecksum::canStart() {
    regParm(g_codeLen);
    src.init(kx8u);
    return true;
}

bool TimdcChecksum::initData() {
    srcLen = g_codeLen.value();
    if (!src.createVector(srcLen, SET_RANDOM, 0.0, 0.0)) {
        return false;
    }
    pSrc = static_cast<Ntk8u*>(src.data());
    return true;
}

void TimdcChecksum::flushData() {
    src.deleteVector();
}

double TimdcChecksum::getDivisor() {
    return g_codeLen.value();
}

static int tcall_ntksAdler32_8u() {
    return ntksAdler32_8u(pSrc, srcLen, &checksum);
}
static int tcall_ntksCRC32_8u() {
    return ntksCRC32_8u(pSrc, srcLen, &checksum);
}
static int tcall_ntksCRC32C_8u() {
    return ntksCRC32C_8u(pSrc, srcLen, &checksum);
}
static int tcall_ntksCRC32_BZ2_8u() {
    return ntksCRC32_BZ2_8u(pSrc, srcLen, &checksum);
}

KX_TIMING(ntksAdler32_8u)
KX_TIMING(ntksCRC32_8u)
KX_TIMING(ntksCRC32C_8u)
KX_TIMING(ntksCRC32_BZ2_8u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dcchecksum_ia";
    registerHooks();
    KX_REGISTER(TimdcChecksum, ntksAdler32_8u, source);
    KX_REGISTER(TimdcChecksum, ntksCRC32_8u, source);
    KX_REGISTER(TimdcChecksum, ntksCRC32C_8u, source);
    KX_REGISTER(TimdcChecksum, ntksCRC32_BZ2_8u, source);
    return true;
}();

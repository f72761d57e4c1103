#include "p_dclzss_ia.h"

#include "dchooks.h"
#include "dcprepare.h"
#include "kxtiming.h"
#include "kxdc.h"

namespace dclzss {
kxVector src, dst;
Ntk8u* pSrc = nullptr;
Ntk8u* pDst = nullptr;
int srcLen = 0, dstLen = 0;
int len = 0;
Ntk32u maxSrcLen = 0, maxDstLen = 0;
Ntk8u* pState = nullptr;
} // namespace dclzss
using namespace dclzss;

// ---- Preparation ------------------------------------------------------------------------------

static void pointToStart() {
    pSrc = static_cast<Ntk8u*>(src.data());
    pDst = static_cast<Ntk8u*>(dst.data());
    srcLen = static_cast<int>(maxSrcLen);
    dstLen = static_cast<int>(maxDstLen);
}

bool TimdcLZSS::canStart() {
    m_isEncoder = functionName().contains("Encode");
    regParm(g_codeLen);
    regParm(g_codeFile);
    src.init(kx8u);
    dst.init(kx8u);
    return true;
}

bool TimdcLZSS::initData() {
    if (!createBuffers({&src, &dst})) {
        return false;
    }
    maxSrcLen = maxDstLen = 2 * static_cast<Ntk32u>(g_codeLen.value());
    len = readCodeFile(src.data());
    if (len < 1 || !createState()) {
        return false;
    }
    maxSrcLen = static_cast<Ntk32u>(len);
    return m_isEncoder || encodeForDecoder();
}

bool TimdcLZSS::createState() {
    int size = 0;
    if (!passed(ntksLZSSGetSize_8u(&size), "ntksLZSSGetSize_8u")) {
        return false;
    }
    pState = static_cast<Ntk8u*>(psMalloc(size, 0, 0, MEM_OBJECT_IS_BUFFER));
    return pState && passed(ntksEncodeLZSSInit_8u(pState), "ntksEncodeLZSSInit_8u");
}

// From here on maxDstLen is the compressed length, the decoder's source length.
bool TimdcLZSS::encodeForDecoder() {
    pointToStart();
    if (!passed(ntksEncodeLZSS_8u(&pSrc, &srcLen, &pDst, &dstLen, pState), "ntksEncodeLZSS_8u") ||
        !passed(ntksEncodeLZSSFlush_8u(&pDst, &dstLen, pState), "ntksEncodeLZSSFlush_8u")) {
        return false;
    }
    maxDstLen -= static_cast<Ntk32u>(dstLen);
    maxSrcLen = 2 * static_cast<Ntk32u>(len);
    return passed(ntksDecodeLZSSInit_8u(pState), "ntksDecodeLZSSInit_8u");
}

void TimdcLZSS::flushData() {
    src.deleteVector();
    dst.deleteVector();
    psFree(pState);
    pState = nullptr;
}

// The decoder too is measured per byte of the data.
double TimdcLZSS::getDivisor() {
    return len;
}

// The encoder's is that of its last call, which may find the data of the call before in its window.
// A call that only took its few bytes and wrote none has no ratio.
psString TimdcLZSS::ratioText() const {
    const Ntk32u codeLen = m_isEncoder ? maxDstLen - static_cast<Ntk32u>(dstLen) : maxDstLen;
    return codeLen == 0 ? psString("-") : psText(static_cast<double>(len) / codeLen);
}

void TimdcLZSS::parmsToOstrm() {
    g_ostrm << "length=" << len << " ";
    psTest::parmsToOstrm();
}

void TimdcLZSS::parmsToCstrm() {
    g_cstrm << psText(len) << g_codeFile.valueString() << "-" << ratioText();
}

// ---- Calls and init bodies --------------------------------------------------------------------

// The encoder's state is not initialised again, so that its window goes on from call to call, and
// no flush follows the call: meant so.
static int tinit_ntksEncodeLZSS_8u() {
    pointToStart();
    return 0;
}
static int tcall_ntksEncodeLZSS_8u() {
    return ntksEncodeLZSS_8u(&pSrc, &srcLen, &pDst, &dstLen, pState);
}
KX_TIMING_I(ntksEncodeLZSS_8u)

// The decoder reads dst and writes the data back over src; the status of its initialisation is
// passed over, the measured call tells.
static int tinit_ntksDecodeLZSS_8u() {
    pointToStart();
    ntksDecodeLZSSInit_8u(pState);
    return 0;
}
static int tcall_ntksDecodeLZSS_8u() {
    return ntksDecodeLZSS_8u(&pDst, &dstLen, &pSrc, &srcLen, pState);
}
KX_TIMING_I(ntksDecodeLZSS_8u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dclzss_ia";
    registerHooks();
    KX_REGISTER_I(TimdcLZSS, ntksEncodeLZSS_8u, source);
    KX_REGISTER_I(TimdcLZSS, ntksDecodeLZSS_8u, source);
    return true;
}();

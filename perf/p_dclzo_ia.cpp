#include "p_dclzo_ia.h"

#include "dchooks.h"
#include "kxtiming.h"

namespace dclzo {
kxVector src, dst;
Ntk8u* pSrc = nullptr;
Ntk8u* pDst = nullptr;
Ntk32u srcLen = 0, dstLen = 0;
int len = 0;
Ntk32u maxSrcLen = 0, maxDstLen = 0;
Ntk8u* pState = nullptr;
psMapIterator<NtkLZOMethod> method;
} // namespace dclzo
using namespace dclzo;

// ---- Preparation ------------------------------------------------------------------------------

bool TimdcLZO::canStart() {
    m_isEncoder = functionName().contains("Encode");
    dcFileTest::canStart();
    regParm(method);
    method.resetMap();
    method.addMap("ST", ntkLZOST);
    method.addMap("ST1X", ntkLZOST1X);
    method.addMap("MT", ntkLZOMT);
    method.init(ntkLZOST, "method");
    for (const NtkLZOMethod value : {ntkLZOST, ntkLZOST1X, ntkLZOMT}) {
        method.add(value);
    }
    src.init(kx8u);
    dst.init(kx8u);
    return true;
}

long long TimdcLZO::length() const {
    return len;
}

bool TimdcLZO::createBuffers() {
    return createVectors({&src, &dst}, 2 * g_codeLen.value());
}

int TimdcLZO::readFile() {
    return len = readInto(src.data());
}

static bool createEncoderState() {
    Ntk32u size = 0;
    return passed(ntksEncodeLZOGetSize(method.value(), static_cast<Ntk32u>(len), &size),
                  "ntksEncodeLZOGetSize") &&
           isSize(size, "ntksEncodeLZOGetSize") && createState(pState, static_cast<int>(size)) &&
           passed(ntksEncodeLZOInit_8u(method.value(), static_cast<Ntk32u>(len), pState),
                  "ntksEncodeLZOInit_8u");
}

// From here on the compressed length is the decoders' source length, and they may write twice the
// length of the data.
static bool encodeForDecoder() {
    if (!passed(ntksEncodeLZO_8u(pSrc, static_cast<Ntk32u>(len), pDst, &dstLen, pState),
                "ntksEncodeLZO_8u") ||
        !arePossible({{"destination length", dstLen, 1, maxDstLen}}, "ntksEncodeLZO_8u")) {
        return false;
    }
    maxDstLen = dstLen;
    maxSrcLen = 2 * static_cast<Ntk32u>(len);
    return true;
}

bool TimdcLZO::prepare() {
    if (!createEncoderState()) {
        return false;
    }
    pSrc = static_cast<Ntk8u*>(src.data());
    pDst = static_cast<Ntk8u*>(dst.data());
    maxSrcLen = srcLen = static_cast<Ntk32u>(len);
    maxDstLen = dstLen = 2 * static_cast<Ntk32u>(g_codeLen.value());
    return m_isEncoder || encodeForDecoder();
}

void TimdcLZO::flushData() {
    release({&src, &dst}, {&pState});
}

// The decoders too are measured per byte of the data, not per compressed byte.
double TimdcLZO::getDivisor() {
    return len;
}

const psParameter* TimdcLZO::variant() const {
    return &method;
}

std::optional<double> TimdcLZO::ratio() const {
    return static_cast<double>(len) / dstLen;
}

// A decoder's destination is the encoder's source.
dcLengths TimdcLZO::lengthsLeft() const {
    if (m_isEncoder) {
        return {{"destination length", dstLen, 1, maxDstLen}};
    }
    return {{"destination length", srcLen, 1, maxSrcLen}};
}

// ---- Calls and init bodies --------------------------------------------------------------------

static int tinit_ntksEncodeLZO_8u() {
    dstLen = maxDstLen;
    return 0;
}
static int tcall_ntksEncodeLZO_8u() {
    return ntksEncodeLZO_8u(pSrc, srcLen, pDst, &dstLen, pState);
}
KX_TIMING_I(ntksEncodeLZO_8u)

// Deliberate: the decoders write the data back over the source. They are the same bytes.
static int tinit_ntksDecodeLZO_8u() {
    srcLen = maxSrcLen;
    return 0;
}
static int tcall_ntksDecodeLZO_8u() {
    return ntksDecodeLZO_8u(pDst, dstLen, pSrc, &srcLen);
}
KX_TIMING_I(ntksDecodeLZO_8u)

static int tinit_ntksDecodeLZOSafe_8u() {
    return tinit_ntksDecodeLZO_8u();
}
static int tcall_ntksDecodeLZOSafe_8u() {
    return ntksDecodeLZOSafe_8u(pDst, dstLen, pSrc, &srcLen);
}
KX_TIMING_I(ntksDecodeLZOSafe_8u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dclzo_ia";
    registerHooks();
    KX_REGISTER_I(TimdcLZO, ntksEncodeLZO_8u, source);
    KX_REGISTER_I(TimdcLZO, ntksDecodeLZO_8u, source);
    KX_REGISTER_I(TimdcLZO, ntksDecodeLZOSafe_8u, source);
    return true;
}();

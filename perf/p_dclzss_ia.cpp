#include "p_dclzss_ia.h"

#include <vector>

#include "dchooks.h"
#include "kxtiming.h"

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
    src.init(kx8u);
    dst.init(kx8u);
    return dcFileTest::canStart();
}

long long TimdcLZSS::length() const {
    return len;
}

bool TimdcLZSS::createBuffers() {
    return createVectors({&src, &dst}, 2 * g_codeLen.value());
}

int TimdcLZSS::readFile() {
    return len = readInto(src.data());
}

static bool createEncoderState() {
    int size = 0;
    return passed(ntksLZSSGetSize_8u(&size), "ntksLZSSGetSize_8u") &&
           isSize(size, "ntksLZSSGetSize_8u") && createState(pState, size) &&
           passed(ntksEncodeLZSSInit_8u(pState), "ntksEncodeLZSSInit_8u");
}

// What the encoder leaves: it may keep all of a short source for its flush.
static dcLengths encoded() {
    return {{"source length left", srcLen, 0, maxSrcLen},
            {"destination length left", dstLen, 0, maxDstLen}};
}

// From here on maxDstLen is the compressed length, the decoder's source length.
static bool encodeForDecoder() {
    pointToStart();
    if (!passed(ntksEncodeLZSS_8u(&pSrc, &srcLen, &pDst, &dstLen, pState), "ntksEncodeLZSS_8u") ||
        !arePossible(encoded(), "ntksEncodeLZSS_8u") ||
        !passed(ntksEncodeLZSSFlush_8u(&pDst, &dstLen, pState), "ntksEncodeLZSSFlush_8u") ||
        !arePossible({{"destination length left", dstLen, 0, maxDstLen - 1}},
                     "ntksEncodeLZSSFlush_8u")) {
        return false;
    }
    maxDstLen -= static_cast<Ntk32u>(dstLen);
    maxSrcLen = 2 * static_cast<Ntk32u>(len);
    return passed(ntksDecodeLZSSInit_8u(pState), "ntksDecodeLZSSInit_8u");
}

// A decoder's destination is the encoder's source.
dcLengths TimdcLZSS::lengthsLeft() const {
    if (m_isEncoder) {
        return encoded();
    }
    return {{"source length left", dstLen, 0, maxDstLen},
            {"destination length left", srcLen, 0, maxSrcLen}};
}

bool TimdcLZSS::prepare() {
    m_codeLen.reset();
    maxSrcLen = static_cast<Ntk32u>(len);
    maxDstLen = 2 * static_cast<Ntk32u>(g_codeLen.value());
    return createEncoderState() && (m_isEncoder || encodeForDecoder());
}

void TimdcLZSS::flushData() {
    release({&src, &dst}, {&pState});
}

// The decoder too is measured per byte of the data.
double TimdcLZSS::getDivisor() {
    return len;
}

// What the encoder writes of the data, all of it, from a state of its own; 0 where that fails. The
// measured calls do not tell: their streams go on, and they find the data of the call before.
static Ntk32u freshCodeLength() {
    int size = 0;
    int room = 2 * len; // always enough: prepare() gives the decoder as much
    if (ntksLZSSGetSize_8u(&size) != ntkStsNoErr || size < 1) {
        return 0;
    }
    std::vector<Ntk8u> state(static_cast<std::size_t>(size));
    std::vector<Ntk8u> code(static_cast<std::size_t>(room));
    Ntk8u* from = static_cast<Ntk8u*>(src.data());
    Ntk8u* to = code.data();
    int left = len;
    if (ntksEncodeLZSSInit_8u(state.data()) != ntkStsNoErr ||
        ntksEncodeLZSS_8u(&from, &left, &to, &room, state.data()) != ntkStsNoErr ||
        ntksEncodeLZSSFlush_8u(&to, &room, state.data()) != ntkStsNoErr) {
        return 0;
    }
    const std::ptrdiff_t length = to - code.data();
    return length >= 1 && length <= 2L * len ? static_cast<Ntk32u>(length) : 0;
}

std::optional<double> TimdcLZSS::ratio() const {
    if (!m_codeLen) {
        m_codeLen = m_isEncoder ? freshCodeLength() : maxDstLen;
    }
    if (*m_codeLen == 0) {
        return std::nullopt;
    }
    return static_cast<double>(len) / *m_codeLen;
}

// ---- Calls and init bodies --------------------------------------------------------------------

// Deliberate: the encoder's state is not initialised again and no flush follows the call. What is
// measured is the steady state of a stream, in which the window goes on from call to call.
static int tinit_ntksEncodeLZSS_8u() {
    pointToStart();
    return 0;
}
static int tcall_ntksEncodeLZSS_8u() {
    return ntksEncodeLZSS_8u(&pSrc, &srcLen, &pDst, &dstLen, pState);
}
KX_TIMING_I(ntksEncodeLZSS_8u)

// The decoder reads dst and writes the data back over src. The status of its initialisation is not
// checked: the measured call fails if it did.
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

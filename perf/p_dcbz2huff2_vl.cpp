// The tests of the bzip2 Huffman coder: their state, preparation, calls and registration.

#include "p_dcbz2huff2_vl.h"

#include <algorithm>

#include <ntks.h>

#include "dchooks.h"
#include "kxtiming.h"
#include "kxdc.h"

namespace dcbz2huff {
bool m_bEncode = false;
kxVector src8u, src, dst;
Ntk8u* pSrc8u = nullptr;
Ntk16u* pSrc = nullptr;
Ntk8u* pDst = nullptr;
Ntk8u* pDst1 = nullptr;
int srcLen = 0;
int len = 0, dstLen = 0;
int srcLen1 = 0;
int tmpLen = 0;
Ntk32u pCode = 0;
int pCodeLenBits = 0;
Ntk32u tmpCode = 0;
int tmpCodeLen = 0;
int freqTable[258] = {};
Ntk8u* pEncodeHuffState = nullptr;
Ntk8u* pDecodeHuffState = nullptr;
psIterator<int> dataLength;
} // namespace dcbz2huff
using namespace dcbz2huff;

static constexpr int bufferElements = 1048576;
// That the states are asked for: fewer than a block may have, every state has room for the longest;
// meant so.
static constexpr int blockSymbols = 100000;
static constexpr int longestBlock = 900000; // that the coder takes

// ---- Preparation ------------------------------------------------------------------------------

// Whether a preparation call succeeded; a status that is not 0 is printed.
static bool passed(NtkStatus status, const char* name) {
    return !psIsFail(kxTest::checkStatus(status, name));
}

static Ntk16u* symbols() {
    return static_cast<Ntk16u*>(src.data());
}

static bool allocateState(Ntk8u*& state, int size) {
    state = static_cast<Ntk8u*>(psMalloc(size, 0, 0, MEM_OBJECT_IS_BUFFER));
    return state != nullptr;
}

static bool createEncoderState() {
    int size = 0;
    return passed(ntksEncodeHuffGetSize_BZ2_16u8u(blockSymbols, &size),
                  "ntksEncodeHuffGetSize_BZ2_16u8u") &&
           allocateState(pEncodeHuffState, size);
}

static bool createBuffers() {
    if (dataLength.value() < 1 || dataLength.value() > longestBlock) {
        g_ostrm << PS_ERR << "-- CodeLength=" << dataLength.value() << " is not within 1 to "
                << longestBlock << "\n"
                << PS_END;
        return false;
    }
    for (kxVector* buffer : {&src8u, &src, &dst}) {
        if (!buffer->createVector(bufferElements, SET_CONST, 0.0, 0.0)) {
            return false;
        }
    }
    pSrc8u = static_cast<Ntk8u*>(src8u.data());
    pSrc = symbols();
    pDst = static_cast<Ntk8u*>(dst.data());
    return true;
}

// Also a file that is shorter than the length asked for: no shorter length measures it.
static bool readFile() {
    srcLen = g_codeFile.readData(pSrc8u, dataLength.value(), 0);
    return srcLen >= 1;
}

// Makes 16-bit symbols of the bytes. Returns the end-of-block symbol, which takes the place of the
// last byte: meant so.
static int widen() {
    std::copy(pSrc8u, pSrc8u + srcLen, pSrc);
    const int endOfBlock = *std::max_element(pSrc8u, pSrc8u + srcLen) + 2;
    pSrc[srcLen - 1] = static_cast<Ntk16u>(endOfBlock);
    return endOfBlock;
}

// The frequencies are all zero for the encoder: meant so.
static bool packContext(int alphabet) {
    if (!passed(ntksZero_8u(reinterpret_cast<Ntk8u*>(freqTable), sizeof freqTable),
                "ntksZero_8u") ||
        !passed(ntksEncodeHuffInit_BZ2_16u8u(alphabet, freqTable, pSrc, srcLen, pEncodeHuffState),
                "ntksEncodeHuffInit_BZ2_16u8u")) {
        return false;
    }
    pCode = 0;
    pCodeLenBits = 0;
    tmpLen = bufferElements;
    tmpCode = 0;
    tmpCodeLen = 0;
    return passed(
        ntksPackHuffContext_BZ2_16u8u(&tmpCode, &tmpCodeLen, pDst, &tmpLen, pEncodeHuffState),
        "ntksPackHuffContext_BZ2_16u8u");
}

static void flushBits() {
    while (pCodeLenBits > 0) {
        pDst[dstLen++] = static_cast<Ntk8u>(pCode >> 24);
        pCodeLenBits -= 8;
        pCode <<= 8;
    }
}

// The capacity is that of the whole buffer, not of what is left behind the context: meant so.
static bool encodeForDecoder() {
    pCode = tmpCode;
    pCodeLenBits = tmpCodeLen;
    if (!passed(ntksEncodeHuff_BZ2_16u8u(&pCode, &pCodeLenBits, &pSrc, &len, pDst + tmpLen, &dstLen,
                                         pEncodeHuffState),
                "ntksEncodeHuff_BZ2_16u8u")) {
        return false;
    }
    dstLen += tmpLen;
    flushBits();
    return true;
}

static bool unpackContext(int alphabet) {
    int size = 0;
    if (!passed(ntksDecodeHuffGetSize_BZ2_8u16u(blockSymbols, &size),
                "ntksDecodeHuffGetSize_BZ2_8u16u") ||
        !allocateState(pDecodeHuffState, size) ||
        !passed(ntksDecodeHuffInit_BZ2_8u16u(alphabet, pDecodeHuffState),
                "ntksDecodeHuffInit_BZ2_8u16u")) {
        return false;
    }
    tmpCode = 0;
    tmpCodeLen = 0;
    return passed(
        ntksUnpackHuffContext_BZ2_8u16u(&tmpCode, &tmpCodeLen, &pDst, &dstLen, pDecodeHuffState),
        "ntksUnpackHuffContext_BZ2_8u16u");
}

static bool prepareDecoder(int alphabet) {
    if (!encodeForDecoder() || !unpackContext(alphabet)) {
        return false;
    }
    srcLen1 = dstLen;
    len = dstLen;
    pSrc = reinterpret_cast<Ntk16u*>(dst.data()); // until the init body sets it: meant so
    pDst1 = pDst;
    return true;
}

bool Timdcbz2Huff::canStart() {
    m_bEncode = functionName().contains("Encode");
    regParm(dataLength);
    regParm(g_codeFile);
    dataLength.init(0, "CodeLength");
    dataLength.add(102400);
    src.init(kx16u);
    src8u.init(kx8u);
    dst.init(kx8u);
    return true;
}

bool Timdcbz2Huff::initData() {
    if (!createEncoderState() || !createBuffers() || !readFile()) {
        return false;
    }
    const int alphabet = widen() + 1;
    if (!packContext(alphabet)) {
        return false;
    }
    dstLen = bufferElements;
    len = srcLen;
    return m_bEncode || prepareDecoder(alphabet);
}

void Timdcbz2Huff::flushData() {
    for (kxVector* buffer : {&src, &src8u, &dst}) {
        buffer->deleteVector();
    }
    for (Ntk8u** state : {&pEncodeHuffState, &pDecodeHuffState}) {
        psFree(*state);
        *state = nullptr;
    }
}

double Timdcbz2Huff::getDivisor() {
    return m_bEncode ? srcLen : len; // after the call that is what was decoded: meant so
}

void Timdcbz2Huff::parmsToOstrm() {
    g_ostrm << " length=" << srcLen << " ";
    g_codeFile.toOStream(g_ostrm);
}

void Timdcbz2Huff::parmsToCstrm() {
    g_cstrm << psText(srcLen) << g_codeFile.valueString();
}

// ---- Calls and init bodies --------------------------------------------------------------------

// Either test's init body serves either role.
static int resetArguments() {
    if (m_bEncode) {
        dstLen = bufferElements; // the context's room, too, is counted: meant so
    } else {
        dstLen = srcLen1;
        pDst = pDst1;
    }
    len = srcLen;
    pSrc = symbols();
    pCode = tmpCode;
    pCodeLenBits = tmpCodeLen;
    return 0;
}

static int tinit_ntksEncodeHuff_BZ2_16u8u() {
    return resetArguments();
}
static int tcall_ntksEncodeHuff_BZ2_16u8u() {
    return ntksEncodeHuff_BZ2_16u8u(&pCode, &pCodeLenBits, &pSrc, &len, pDst + tmpLen, &dstLen,
                                    pEncodeHuffState);
}
KX_TIMING_I(ntksEncodeHuff_BZ2_16u8u)

static int tinit_ntksDecodeHuff_BZ2_8u16u() {
    return resetArguments();
}
static int tcall_ntksDecodeHuff_BZ2_8u16u() {
    return ntksDecodeHuff_BZ2_8u16u(&pCode, &pCodeLenBits, &pDst, &dstLen, pSrc, &len,
                                    pDecodeHuffState);
}
KX_TIMING_I(ntksDecodeHuff_BZ2_8u16u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dcbz2huff2_vl";
    registerHooks();
    KX_REGISTER_I(Timdcbz2Huff, ntksEncodeHuff_BZ2_16u8u, source);
    KX_REGISTER_I(Timdcbz2Huff, ntksDecodeHuff_BZ2_8u16u, source);
    return true;
}();

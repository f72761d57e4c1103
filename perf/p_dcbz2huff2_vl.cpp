// The tests of the bzip2 Huffman coder: their state, preparation, calls and registration.
//
// They code the bytes of a file as they are, not the symbols that bzip2 makes of them, and give
// some arguments values that a bzip2 run would not. That is deliberate: it defines the work that is
// timed, and figures of different builds of the library are compared only as long as this work
// stays the same. Comments say where.

#include "p_dcbz2huff2_vl.h"

#include <algorithm>

#include <ntks.h>

#include "dchooks.h"
#include "kxtiming.h"

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
// That the states' sizes are asked for. Fewer than a block may have: the size is the same for all.
static constexpr int blockSymbols = 100000;
static constexpr int flushedBytes = 4; // that the pending bits may fill

// ---- Preparation ------------------------------------------------------------------------------

static Ntk16u* symbols() {
    return static_cast<Ntk16u*>(src.data());
}

long long Timdcbz2Huff::length() const {
    return srcLen;
}

psIterator_NSC<int>& Timdcbz2Huff::lengthParm() {
    return dataLength;
}

int Timdcbz2Huff::largestLength() const {
    return 900000; // that the coder takes
}

static bool createEncoderState() {
    int size = 0;
    return passed(ntksEncodeHuffGetSize_BZ2_16u8u(blockSymbols, &size),
                  "ntksEncodeHuffGetSize_BZ2_16u8u") &&
           isSize(size, "ntksEncodeHuffGetSize_BZ2_16u8u") && createState(pEncodeHuffState, size);
}

bool Timdcbz2Huff::createBuffers() {
    if (!createVectors({&src8u, &src, &dst}, bufferElements)) {
        return false;
    }
    pSrc8u = static_cast<Ntk8u*>(src8u.data());
    pSrc = symbols();
    pDst = static_cast<Ntk8u*>(dst.data());
    return true;
}

int Timdcbz2Huff::readFile() {
    return srcLen = readInto(pSrc8u);
}

// Makes 16-bit symbols of the bytes. Returns the end-of-block symbol, which replaces the last byte
// so that there are as many symbols as bytes.
static int widen() {
    auto* const symbol = reinterpret_cast<dcElement<Ntk16u>*>(pSrc);
    for (int i = 0; i < srcLen; i++) {
        symbol[i].value = pSrc8u[i];
    }
    const int endOfBlock = *std::max_element(pSrc8u, pSrc8u + srcLen) + 2;
    symbol[srcLen - 1].value = static_cast<Ntk16u>(endOfBlock);
    return endOfBlock;
}

static dcLength pendingBits(int bits) {
    return {"length of the pending bits", bits, 0, 8LL * flushedBytes};
}

// The encoder is given frequencies of zero: its code tables come from the symbols alone.
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
    return passed(ntksPackHuffContext_BZ2_16u8u(&tmpCode, &tmpCodeLen, pDst, &tmpLen,
                                                pEncodeHuffState),
                  "ntksPackHuffContext_BZ2_16u8u") &&
           arePossible(
               {{"destination length", tmpLen, 0, bufferElements / 2}, pendingBits(tmpCodeLen)},
               "ntksPackHuffContext_BZ2_16u8u");
}

static void flushBits() {
    while (pCodeLenBits > 0) {
        pDst[dstLen++] = static_cast<Ntk8u>(pCode >> 24);
        pCodeLenBits -= 8;
        pCode <<= 8;
    }
}

// The capacity passed is that of the whole buffer; what the context leaves is ample for a block.
static bool encodeForDecoder() {
    pCode = tmpCode;
    pCodeLenBits = tmpCodeLen;
    if (!passed(ntksEncodeHuff_BZ2_16u8u(&pCode, &pCodeLenBits, &pSrc, &len, pDst + tmpLen, &dstLen,
                                         pEncodeHuffState),
                "ntksEncodeHuff_BZ2_16u8u") ||
        !arePossible({pendingBits(pCodeLenBits),
                      {"destination length", dstLen, 0, bufferElements - tmpLen - flushedBytes}},
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
        !isSize(size, "ntksDecodeHuffGetSize_BZ2_8u16u") || !createState(pDecodeHuffState, size) ||
        !passed(ntksDecodeHuffInit_BZ2_8u16u(alphabet, pDecodeHuffState),
                "ntksDecodeHuffInit_BZ2_8u16u")) {
        return false;
    }
    tmpCode = 0;
    tmpCodeLen = 0;
    return passed(ntksUnpackHuffContext_BZ2_8u16u(&tmpCode, &tmpCodeLen, &pDst, &dstLen,
                                                  pDecodeHuffState),
                  "ntksUnpackHuffContext_BZ2_8u16u") &&
           arePossible({{"source length left", dstLen, 0, bufferElements}, pendingBits(tmpCodeLen)},
                       "ntksUnpackHuffContext_BZ2_8u16u");
}

static bool prepareDecoder(int alphabet) {
    if (!encodeForDecoder() || !unpackContext(alphabet)) {
        return false;
    }
    srcLen1 = dstLen;
    len = dstLen;
    pSrc = reinterpret_cast<Ntk16u*>(dst.data()); // until the init body sets it to the symbols
    pDst1 = pDst;
    return true;
}

bool Timdcbz2Huff::canStart() {
    m_bEncode = functionName().contains("Encode");
    dcBlockTest::canStart();
    dataLength.init(0, "CodeLength");
    dataLength.add(102400);
    src.init(kx16u);
    src8u.init(kx8u);
    dst.init(kx8u);
    return true;
}

// The encoder's state comes first, before the length is looked at: blocks are placed by their
// order.
bool Timdcbz2Huff::initData() {
    return createEncoderState() && dcBlockTest::initData();
}

bool Timdcbz2Huff::prepare() {
    const int alphabet = widen() + 1;
    if (!packContext(alphabet)) {
        return false;
    }
    dstLen = bufferElements;
    len = srcLen;
    return m_bEncode || prepareDecoder(alphabet);
}

dcLengths Timdcbz2Huff::lengthsLeft() const {
    if (m_bEncode) {
        return {{"source length left", len, 0, srcLen},
                {"destination length", dstLen, 0, bufferElements},
                pendingBits(pCodeLenBits)};
    }
    return {{"destination length", len, 1, bufferElements},
            {"source length left", dstLen, 0, srcLen1},
            pendingBits(pCodeLenBits)};
}

void Timdcbz2Huff::flushData() {
    release({&src, &src8u, &dst}, {&pEncodeHuffState, &pDecodeHuffState});
}

double Timdcbz2Huff::getDivisor() {
    return m_bEncode ? srcLen : len; // after the decoder's call, the symbols that it decoded
}

// ---- Calls and init bodies --------------------------------------------------------------------

// Either test's init body serves either role.
static int resetArguments() {
    if (m_bEncode) {
        dstLen = bufferElements; // of the whole buffer: see encodeForDecoder
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

// The deflate and inflate tests: their state, preparation, calls and registration. One file,
// because the calls and what resets their arguments must be read together.

#include "p_dclz77deflate_ia.h"

#include <algorithm>

#include "dchooks.h"
#include "kxtiming.h"

constexpr int dataBytes = 102400;
constexpr int windowSize = 32768; // and the entries of either hash table
constexpr int hashBytes = windowSize * static_cast<int>(sizeof(Ntk32s));
constexpr int endOfBlock = 256; // the symbol
constexpr int mostPendingBits = 32;

namespace dcdeflate {
Ntk8u* pData = nullptr;
Ntk8u* pDist = nullptr;
Ntk8u* pHuff = nullptr;
Ntk8u* pLit = nullptr;
Ntk8u* pHashHead = nullptr;
Ntk8u* pHashPrev = nullptr;
Ntk32u dataLen = 0;
Ntk32u distLen = 0;
Ntk32u huffLen = 0;
const Ntk8u* pSrc = nullptr;
Ntk8u* pDst = nullptr;
int srcLen = 0, dstLen = 0;
int srcIdx = 0, dstIdx = 0;
Ntk32u code = 0;
int codeLen = 0;
int mode = ntkInflateFixed;
NtksInflateState inflateState = {};
Ntk32u pLitFreqTable[286] = {};
Ntk32u pDistFreqTable[30] = {};
psIterator_NSC<int> dataLength;
psIterator_NSC<int> comprLevel;

// Codes of one length in the order of their symbols.
static constexpr void assign(NtkHuffCode* codes, int count, unsigned first, unsigned len) {
    for (int i = 0; i < count; i++, first++) {
        unsigned reversed = 0;
        for (unsigned bit = 0; bit < len; bit++) {
            reversed |= (first >> bit & 1) << (len - 1 - bit);
        }
        codes[i] = {static_cast<Ntk16u>(reversed), static_cast<Ntk16u>(len)};
    }
}
constexpr std::array<NtkHuffCode, 288> pLitHuffCodes = [] {
    std::array<NtkHuffCode, 288> codes{};
    assign(&codes[0], 144, 0x30, 8);
    assign(&codes[144], 112, 0x190, 9);
    assign(&codes[256], 24, 0, 7);
    assign(&codes[280], 8, 0xC0, 8);
    return codes;
}();
constexpr std::array<NtkHuffCode, 30> pDistHuffCodes = [] {
    std::array<NtkHuffCode, 30> codes{};
    assign(&codes[0], 30, 0, 5);
    return codes;
}();
} // namespace dcdeflate
using namespace dcdeflate;

static Ntk16u* words(Ntk8u* bytes) {
    return reinterpret_cast<Ntk16u*>(bytes);
}
static const Ntk16u* words(const Ntk8u* bytes) {
    return reinterpret_cast<const Ntk16u*>(bytes);
}
static Ntk32s* positions(Ntk8u* bytes) {
    return reinterpret_cast<Ntk32s*>(bytes);
}

// ---- Calls and init bodies --------------------------------------------------------------------

// A match search over all of the data with room for so many entries. Only the heads of the hash
// chains are reset; pHashPrev need not be, as only the heads lead into it.
static void resetSearch(Ntk32u room) {
    constexpr dcElement<Ntk32s> farBefore = {-windowSize};
    std::fill_n(reinterpret_cast<dcElement<Ntk32s>*>(pHashHead), windowSize, farBefore);
    pSrc = pData;
    pDst = pDist;
    srcLen = static_cast<int>(dataLen);
    dstLen = static_cast<int>(room);
    srcIdx = 0;
}

// Deliberate: there is exactly the room that the entries took in the preparation. A search that
// finds other matches in a later call would fail instead of being measured.
static int tinit_ntksDeflateLZ77_8u() {
    resetSearch(distLen);
    return 0;
}
// The window begins where the source does. The frequencies add up over all calls: nothing reads
// them, and clearing them would be part of the timed span of the statistics method.
static int tcall_ntksDeflateLZ77_8u() {
    return ntksDeflateLZ77_8u(&pSrc, &srcLen, &srcIdx, pSrc, windowSize, positions(pHashHead),
                              positions(pHashPrev), windowSize, pLitFreqTable, pDistFreqTable, pLit,
                              words(pDst), &dstLen, comprLevel.value(), ntkDeflateFinish);
}
KX_TIMING_I(ntksDeflateLZ77_8u)

static int tinit_ntksDeflateHuff_8u() {
    pSrc = pDist;
    pDst = pHuff;
    srcLen = static_cast<int>(distLen);
    dstIdx = 0;
    code = 0;
    codeLen = 0;
    return 0;
}
static int tcall_ntksDeflateHuff_8u() {
    return ntksDeflateHuff_8u(pLit, words(pSrc), srcLen, &code, &codeLen, pLitHuffCodes.data(),
                              pDistHuffCodes.data(), pDst, &dstIdx);
}
KX_TIMING_I(ntksDeflateHuff_8u)

// The stream has no block header: it starts with the first symbol. The output overwrites the file's
// data, which nothing reads after the preparation. Of the pending bits only the number is reset:
// with none pending the value of `code` does not count.
static int tinit_ntksInflate_8u() {
    pSrc = pHuff;
    pDst = pData;
    srcLen = static_cast<int>(huffLen);
    dstLen = static_cast<int>(dataLen);
    codeLen = 0;
    mode = ntkInflateFixed;
    inflateState.progress = 0;
    return 0;
}
static int tcall_ntksInflate_8u() {
    return ntksInflate_8u(&pSrc, &srcLen, &code, &codeLen, nullptr, &pDst, &dstLen, 0, &mode,
                          &inflateState);
}
KX_TIMING_I(ntksInflate_8u)

// ---- Preparation ------------------------------------------------------------------------------

bool Timdc_Deflate::canStart() {
    dcBlockTest::canStart();
    regParm(comprLevel);
    dataLength.init(dataBytes, "CodeLength");
    dataLength.add(dataBytes);
    comprLevel.init(1, "comprLevel");
    for (const int level : {1, 6, 9}) {
        comprLevel.add(level);
    }
    return true;
}

psIterator_NSC<int>& Timdc_Deflate::lengthParm() {
    return dataLength;
}

bool Timdc_Deflate::createBuffers() {
    const int length = dataLength.value();
    return createBlock(pData, length, -1) && createBlock(pDist, 2 * length, -1) &&
           createBlock(pHuff, 2 * length, -1) && createBlock(pLit, length, -1) &&
           createBlock(pHashHead, hashBytes, -1) && createBlock(pHashPrev, hashBytes, -1);
}

int Timdc_Deflate::readFile() {
    const int length = readInto(pData);
    dataLen = static_cast<Ntk32u>(length);
    distLen = dataLen; // the room of the search: no more entries than bytes
    return length;
}

static bool search() {
    resetSearch(distLen);
    if (!passed(tcall_ntksDeflateLZ77_8u(), "ntksDeflateLZ77_8u") ||
        !arePossible({{"destination length left", dstLen, 0, distLen - 1}}, "ntksDeflateLZ77_8u")) {
        return false;
    }
    distLen -= static_cast<Ntk32u>(dstLen);
    return true;
}

// What the coder leaves: bytes written, and bits that fill no byte.
static dcLengths coded() {
    return {{"destination index", dstIdx, 0, 2LL * dataLen},
            {"length of the pending bits", codeLen, 0, mostPendingBits}};
}

static void putByte() {
    pHuff[huffLen++] = static_cast<Ntk8u>(code);
    code >>= 8;
    codeLen -= 8;
}

// Ends the block: writes the pending bits and the code of the block's end.
static void finishStream() {
    huffLen = static_cast<Ntk32u>(dstIdx);
    while (codeLen >= 9) { // up to 8 bits stay: the end's code fits above them
        putByte();
    }
    code |= static_cast<Ntk32u>(pLitHuffCodes[endOfBlock].code) << codeLen;
    codeLen += pLitHuffCodes[endOfBlock].len;
    while (codeLen > 0) {
        putByte();
    }
}

bool Timdc_Deflate::prepare() {
    if (!search()) {
        return false;
    }
    tinit_ntksDeflateHuff_8u();
    if (!passed(tcall_ntksDeflateHuff_8u(), "ntksDeflateHuff_8u") ||
        !arePossible(coded(), "ntksDeflateHuff_8u")) {
        return false;
    }
    finishStream();
    return true;
}

dcLengths Timdc_Deflate::lengthsLeft() const {
    if (functionName() == "ntksDeflateHuff_8u") {
        return coded();
    }
    const bool isInflate = functionName() == "ntksInflate_8u";
    return {{"source length left", srcLen, 0, isInflate ? huffLen : dataLen},
            {"destination length left", dstLen, 0, isInflate ? dataLen : distLen}};
}

void Timdc_Deflate::flushData() {
    release({}, {&pData, &pDist, &pHuff, &pLit, &pHashHead, &pHashPrev});
}

double Timdc_Deflate::getDivisor() {
    return dataLen;
}

long long Timdc_Deflate::length() const {
    return dataLen;
}

const psParameter* Timdc_Deflate::variant() const {
    return &comprLevel;
}

void Timdc_Deflate::parmsToOstrm() {
    dcBlockTest::parmsToOstrm();
    comprLevel.toOStream(g_ostrm);
}

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dclz77deflate_ia";
    registerHooks();
    KX_REGISTER_I(Timdc_Deflate, ntksDeflateLZ77_8u, source);
    KX_REGISTER_I(Timdc_Deflate, ntksDeflateHuff_8u, source);
    KX_REGISTER_I(Timdc_Deflate, ntksInflate_8u, source);
    return true;
}();

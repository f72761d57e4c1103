// The tests of the bzip2 stages: their state, preparation, calls and registration. One file,
// because the calls and what resets their arguments must be read together.
//
// The stages share buffers and states, and few of them are reset between the calls of a test: a
// call reads what the preparation or the call before it left, and its output is not always what
// bzip2 would make of the file. That is deliberate. It defines the work that is timed, and figures
// of different builds of the library are compared only as long as this work stays the same. Where
// it differs from a bzip2 run, a comment says how.

#include "p_dcbz2_ia.h"

#include <ntks.h>

#include "dchooks.h"
#include "kxtiming.h"

namespace dcbz2 {
Ntk8u* pSrcRLE = nullptr;
Ntk8u* pSrcDict = nullptr;
Ntk8u* pSrcBWT = nullptr;
Ntk8u* pSrcMTF = nullptr;
Ntk8u* pSrcZ1Z2 = nullptr;
Ntk8u* pDstZ1Z2 = nullptr;
int len = 0;
int srcRLELen = 0, srcDictLen = 0, srcBWTLen = 0, srcMTFLen = 0, srcZ1Z2Len = 0;
int dstZ1Z2Len = 0;
int maxLen = 0;
Ntk8u* pRLEState = nullptr;
Ntk8u* pBWTBuff = nullptr;
Ntk8u* pMTFState = nullptr;
Ntk8u* pEncodeHuffState = nullptr;
Ntk8u inUse[256] = {};
int sizeDictionary = 0;
int freqTable[258] = {};
int idx = 0;
Ntk8u* pSrc = nullptr;
Ntk8u* pDst = nullptr;
int srcLen = 0, dstLen = 0;
psIterator<int> dataLength;
psMapIterator<NtkBWTSortAlgorithmHint> hint;
} // namespace dcbz2
using namespace dcbz2;

// ---- Preparation ------------------------------------------------------------------------------

static Ntk16u* symbols(Ntk8u* block) {
    return reinterpret_cast<Ntk16u*>(block);
}

static void setCall(Ntk8u* from, int fromLen, Ntk8u* to, int capacity) {
    pSrc = from;
    srcLen = fromLen;
    pDst = to;
    dstLen = capacity;
}

long long Timdc_BZ2::length() const {
    return len;
}

const psParameter* Timdc_BZ2::variant() const {
    return m_isSelectSort ? &hint : nullptr;
}

// Whether a call counts up or down, none of its lengths can leave the blocks.
dcLengths Timdc_BZ2::lengthsLeft() const {
    return {{"source length", srcLen, 0, maxLen},
            {"destination length", dstLen, 0, maxLen},
            {"length of the dictionary", sizeDictionary, 0, 256}};
}

// Length and file as for the other blocks, and the hint: its combinations would look alike.
void Timdc_BZ2::parmsToOstrm() {
    dcBlockTest::parmsToOstrm();
    if (m_isSelectSort) {
        hint.toOStream(g_ostrm);
    }
}

psIterator_NSC<int>& Timdc_BZ2::lengthParm() {
    return dataLength;
}

int Timdc_BZ2::largestLength() const {
    return 900000; // that a block of the format holds
}

bool Timdc_BZ2::createBuffers() {
    maxLen = 4 * dataLength.value();
    for (Ntk8u** block : {&pSrcRLE, &pSrcDict, &pSrcBWT, &pSrcMTF, &pSrcZ1Z2, &pDstZ1Z2}) {
        if (!createBlock(*block, maxLen, -1)) {
            return false;
        }
    }
    return true;
}

int Timdc_BZ2::readFile() {
    return len = readInto(pSrcRLE);
}

static bool prepareRle() {
    int size = 0;
    if (!passed(ntksRLEGetSize_BZ2_8u(&size), "ntksRLEGetSize_BZ2_8u") ||
        !isSize(size, "ntksRLEGetSize_BZ2_8u") || !createBlock(pRLEState, size, 0) ||
        !passed(ntksEncodeRLEInit_BZ2_8u(pRLEState), "ntksEncodeRLEInit_BZ2_8u")) {
        return false;
    }
    srcRLELen = len;
    setCall(pSrcRLE, len, pSrcDict, maxLen);
    if (!passed(ntksEncodeRLE_BZ2_8u(&pSrc, &srcLen, pSrcDict, &dstLen, pRLEState),
                "ntksEncodeRLE_BZ2_8u") ||
        !arePossible({{"destination length", dstLen, 0, maxLen}}, "ntksEncodeRLE_BZ2_8u")) {
        return false;
    }
    srcDictLen = dstLen;
    // The last run overwrites the first bytes but is counted at the end, where the bytes are zeroes
    // of the new block.
    if (!passed(ntksEncodeRLEFlush_BZ2_8u(pDst, &dstLen, pRLEState), "ntksEncodeRLEFlush_BZ2_8u") ||
        !arePossible({{"destination length", dstLen, 0, maxLen - srcDictLen}},
                     "ntksEncodeRLEFlush_BZ2_8u")) {
        return false;
    }
    srcDictLen += dstLen;
    return true;
}

// Reduces in place: the dictionary tests and the run-length decoder read reduced data.
static bool prepareDictionary() {
    if (!passed(ntksRLEGetInUseTable_8u(inUse, pRLEState), "ntksRLEGetInUseTable_8u")) {
        return false;
    }
    srcBWTLen = srcDictLen;
    pSrc = pSrcDict;
    srcLen = srcDictLen;
    if (!passed(ntksReduceDictionary_8u_I(inUse, pSrcDict, srcDictLen, &sizeDictionary),
                "ntksReduceDictionary_8u_I") ||
        !arePossible({{"length of the dictionary", sizeDictionary, 0, 256}},
                     "ntksReduceDictionary_8u_I")) {
        return false;
    }
    ntksCopy_8u(pSrcDict, pSrcBWT,
                srcDictLen); // cannot fail: both are blocks of this length or more
    return true;
}

bool Timdc_BZ2::prepareBwt() {
    int size = 0;
    if (!passed(ntksBWTFwdGetSize_8u(srcBWTLen, &size), "ntksBWTFwdGetSize_8u") ||
        !isSize(size, "ntksBWTFwdGetSize_8u") || !createBlock(pBWTBuff, size, 0)) {
        return false;
    }
    srcMTFLen = srcBWTLen;
    setCall(pSrcBWT, srcBWTLen, pSrcMTF, maxLen);
    idx = 0;
    if (!passed(ntksBWTFwd_8u(pSrcBWT, pSrcMTF, srcBWTLen, &idx, pBWTBuff), "ntksBWTFwd_8u")) {
        return false;
    }
    if (!m_isInverse) {
        return true;
    }
    if (!passed(ntksBWTInvGetSize_8u(srcBWTLen, &size), "ntksBWTInvGetSize_8u") ||
        !isSize(size, "ntksBWTInvGetSize_8u")) {
        return false;
    }
    release({}, {&pBWTBuff});
    return createBlock(pBWTBuff, size, 0);
}

bool Timdc_BZ2::prepareMtf() {
    int size = 0;
    if (!passed(ntksMTFGetSize_8u(&size), "ntksMTFGetSize_8u") ||
        !isSize(size, "ntksMTFGetSize_8u") || !createBlock(pMTFState, size, 0) ||
        !passed(ntksMTFInit_8u(pMTFState), "ntksMTFInit_8u")) {
        return false;
    }
    srcZ1Z2Len = srcMTFLen;
    setCall(pSrcMTF, srcMTFLen, pSrcZ1Z2, maxLen);
    idx = 0; // not the row found above: the inverse tests start from row 0
    if (!passed(ntksMTFFwd_8u(pSrcMTF, pSrcZ1Z2, srcMTFLen, pMTFState), "ntksMTFFwd_8u")) {
        return false;
    }
    return !m_isInverse || passed(ntksMTFInit_8u(pMTFState), "ntksMTFInit_8u");
}

static bool prepareZ1Z2() {
    // The counts of the two symbols beyond a byte are not cleared.
    constexpr int countedBytes = 256 * sizeof freqTable[0];
    if (!passed(ntksZero_8u(reinterpret_cast<Ntk8u*>(freqTable), countedBytes), "ntksZero_8u")) {
        return false;
    }
    // pSrc is still the source of the move-to-front stage: not the positions are counted, which are
    // coded next.
    for (int i = 0; i < srcZ1Z2Len; i++) {
        freqTable[pSrc[i]]++;
    }
    setCall(pSrcZ1Z2, srcZ1Z2Len, pDstZ1Z2, maxLen >> 1);
    if (!passed(ntksEncodeZ1Z2_BZ2_8u16u(&pSrc, &srcLen, symbols(pDstZ1Z2), &dstLen, freqTable),
                "ntksEncodeZ1Z2_BZ2_8u16u") ||
        !arePossible({{"destination length", dstLen, 0, maxLen >> 1}},
                     "ntksEncodeZ1Z2_BZ2_8u16u")) {
        return false;
    }
    dstZ1Z2Len = dstLen;
    return true;
}

// The alphabet is given as that of the dictionary, without the two symbols that the runs of zeroes
// and the end of the block add.
static int initHuffman() {
    return ntksEncodeHuffInit_BZ2_16u8u(sizeDictionary, freqTable, symbols(pDstZ1Z2), dstZ1Z2Len,
                                        pEncodeHuffState);
}

// The size is that for fewer symbols than a block may have: it is the same for all.
static bool prepareHuffman() {
    constexpr int blockSymbols = 100000;
    int size = 0;
    return passed(ntksEncodeHuffGetSize_BZ2_16u8u(blockSymbols, &size),
                  "ntksEncodeHuffGetSize_BZ2_16u8u") &&
           isSize(size, "ntksEncodeHuffGetSize_BZ2_16u8u") &&
           createBlock(pEncodeHuffState, size, 0) &&
           passed(initHuffman(), "ntksEncodeHuffInit_BZ2_16u8u");
}

static void initHint() {
    hint.resetMap();
    hint.addMap("ntkBWTItohTanakaLimSort", ntkBWTItohTanakaLimSort);
    hint.addMap("ntkBWTItohTanakaUnlimSort", ntkBWTItohTanakaUnlimSort);
    hint.addMap("ntkBWTSuffixSort", ntkBWTSuffixSort);
    // The first name of a value is the one shown: with a blank, as the tables that figures are
    // compared with have it. The second is the one that users type.
    hint.addMap(" ntkBWTAutoSort", ntkBWTAutoSort);
    hint.addMap("ntkBWTAutoSort", ntkBWTAutoSort);
    hint.init(ntkBWTItohTanakaLimSort, "NtkBWTSortAlgorithmHint");
    for (const auto value :
         {ntkBWTItohTanakaLimSort, ntkBWTItohTanakaUnlimSort, ntkBWTSuffixSort, ntkBWTAutoSort}) {
        hint.add(value);
    }
}

bool Timdc_BZ2::canStart() {
    m_isInverse = functionName().contains("Decode") || functionName().contains("Inv");
    m_isSelectSort = functionName().contains("ntksBWTFwd_SelectSort_8u");
    dcBlockTest::canStart();
    if (m_isSelectSort) {
        regParm(hint);
        initHint();
    }
    dataLength.init(0, "CodeLength");
    dataLength.add(102400);
    return true;
}

bool Timdc_BZ2::prepare() {
    return prepareRle() && prepareDictionary() && prepareBwt() && prepareMtf() && prepareZ1Z2() &&
           prepareHuffman();
}

void Timdc_BZ2::flushData() {
    release({}, {&pSrcRLE, &pSrcDict, &pSrcBWT, &pSrcMTF, &pSrcZ1Z2, &pDstZ1Z2, &pRLEState,
                 &pBWTBuff, &pMTFState, &pEncodeHuffState});
}

double Timdc_BZ2::getDivisor() {
    return len;
}

// ---- Calls and init bodies --------------------------------------------------------------------

// The state is never reset: every call after the first begins with the run that the call before it
// left pending.
static int tinit_ntksEncodeRLE_BZ2_8u() {
    setCall(pSrcRLE, srcRLELen, pSrcDict, maxLen);
    return 0;
}
static int tcall_ntksEncodeRLE_BZ2_8u() {
    return ntksEncodeRLE_BZ2_8u(&pSrc, &srcLen, pDst, &dstLen, pRLEState);
}
KX_TIMING_I(ntksEncodeRLE_BZ2_8u)

// Every call reduces the output of the call before it.
static int tinit_ntksReduceDictionary_8u_I() {
    pSrc = pSrcDict;
    srcLen = srcDictLen;
    return 0;
}
static int tcall_ntksReduceDictionary_8u_I() {
    return ntksReduceDictionary_8u_I(inUse, pSrc, srcLen, &sizeDictionary);
}
KX_TIMING_I(ntksReduceDictionary_8u_I)

// Every call expands the output of the call before it.
static int tinit_ntksExpandDictionary_8u_I() {
    pSrc = pSrcDict;
    srcLen = srcDictLen;
    return 0;
}
static int tcall_ntksExpandDictionary_8u_I() {
    return ntksExpandDictionary_8u_I(inUse, pSrc, srcLen, sizeDictionary);
}
KX_TIMING_I(ntksExpandDictionary_8u_I)

static int tinit_ntksBWTFwd_8u() {
    setCall(pSrcBWT, srcBWTLen, pSrcMTF, maxLen);
    idx = 0;
    return 0;
}
static int tcall_ntksBWTFwd_8u() {
    return ntksBWTFwd_8u(pSrc, pDst, srcLen, &idx, pBWTBuff);
}
KX_TIMING_I(ntksBWTFwd_8u)

static int tinit_ntksBWTInv_8u() {
    setCall(pSrcMTF, srcMTFLen, pSrcBWT, maxLen);
    return 0;
}
static int tcall_ntksBWTInv_8u() {
    return ntksBWTInv_8u(pSrc, pDst, srcLen, idx, pBWTBuff);
}
KX_TIMING_I(ntksBWTInv_8u)

// The list of bytes carries over from call to call, here and in the inverse.
static int tinit_ntksMTFFwd_8u() {
    setCall(pSrcMTF, srcMTFLen, pSrcZ1Z2, maxLen);
    idx = 0;
    return 0;
}
static int tcall_ntksMTFFwd_8u() {
    return ntksMTFFwd_8u(pSrc, pDst, srcLen, pMTFState);
}
KX_TIMING_I(ntksMTFFwd_8u)

static int tinit_ntksMTFInv_8u() {
    setCall(pSrcZ1Z2, srcZ1Z2Len, pSrcMTF, maxLen);
    return 0;
}
static int tcall_ntksMTFInv_8u() {
    return ntksMTFInv_8u(pSrc, pDst, srcLen, pMTFState);
}
KX_TIMING_I(ntksMTFInv_8u)

// Every call adds to the counts of the calls before it.
static int tinit_ntksEncodeZ1Z2_BZ2_8u16u() {
    setCall(pSrcZ1Z2, srcZ1Z2Len, pDstZ1Z2, maxLen >> 1);
    return 0;
}
static int tcall_ntksEncodeZ1Z2_BZ2_8u16u() {
    return ntksEncodeZ1Z2_BZ2_8u16u(&pSrc, &srcLen, symbols(pDst), &dstLen, freqTable);
}
KX_TIMING_I(ntksEncodeZ1Z2_BZ2_8u16u)

static int tinit_ntksDecodeZ1Z2_BZ2_16u8u() {
    setCall(pDstZ1Z2, dstZ1Z2Len, pSrcZ1Z2, maxLen);
    return 0;
}
static int tcall_ntksDecodeZ1Z2_BZ2_16u8u() {
    Ntk16u* from = symbols(pSrc);
    const int status = ntksDecodeZ1Z2_BZ2_16u8u(&from, &srcLen, pDst, &dstLen);
    pSrc = reinterpret_cast<Ntk8u*>(from);
    return status;
}
KX_TIMING_I(ntksDecodeZ1Z2_BZ2_16u8u)

static int tinit_ntksDecodeBlock_BZ2_16u8u() {
    return tinit_ntksDecodeZ1Z2_BZ2_16u8u();
}
static int tcall_ntksDecodeBlock_BZ2_16u8u() {
    return ntksDecodeBlock_BZ2_16u8u(symbols(pSrc), srcLen, pDst, &dstLen, idx, sizeDictionary,
                                     inUse, pBWTBuff);
}
KX_TIMING_I(ntksDecodeBlock_BZ2_16u8u)

// It decodes reduced data, with the encoder's state: the output is not the file.
static int tinit_ntksDecodeRLEState_BZ2_8u() {
    setCall(pSrcDict, srcDictLen, pSrcRLE, maxLen);
    return 0;
}
static int tcall_ntksDecodeRLEState_BZ2_8u() {
    return ntksDecodeRLEState_BZ2_8u(&pSrc, &srcLen, &pDst, &dstLen, pRLEState);
}
KX_TIMING_I(ntksDecodeRLEState_BZ2_8u)

static int tinit_ntksBWTFwd_SelectSort_8u() {
    return tinit_ntksBWTFwd_8u();
}
static int tcall_ntksBWTFwd_SelectSort_8u() {
    return ntksBWTFwd_SelectSort_8u(pSrc, pDst, srcLen, &idx, pBWTBuff, hint.value());
}
KX_TIMING_I(ntksBWTFwd_SelectSort_8u)

static int tcall_ntksEncodeHuffInit_BZ2_16u8u() {
    return initHuffman();
}
KX_TIMING(ntksEncodeHuffInit_BZ2_16u8u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dcbz2_ia";
    registerHooks();
    KX_REGISTER_I(Timdc_BZ2, ntksEncodeRLE_BZ2_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksReduceDictionary_8u_I, source);
    KX_REGISTER_I(Timdc_BZ2, ntksExpandDictionary_8u_I, source);
    KX_REGISTER_I(Timdc_BZ2, ntksBWTFwd_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksBWTInv_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksMTFFwd_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksMTFInv_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksEncodeZ1Z2_BZ2_8u16u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksDecodeZ1Z2_BZ2_16u8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksDecodeBlock_BZ2_16u8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksDecodeRLEState_BZ2_8u, source);
    KX_REGISTER_I(Timdc_BZ2, ntksBWTFwd_SelectSort_8u, source);
    KX_REGISTER(Timdc_BZ2, ntksEncodeHuffInit_BZ2_16u8u, source);
    return true;
}();

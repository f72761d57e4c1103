// The LZ4 tests: their state, preparation, calls and registration. One file, because the calls
// and what resets their arguments must be read together.

#include "p_dclz4.h"

#include <cstring>

#include "dchooks.h"
#include "dcprepare.h"
#include "kxtiming.h"
#include "kxdc.h"

namespace dclz4 {
kxVector fileBuf, comprBuf, decomprBuf;
kxVector dictBuf;
int fileLen = 0;
Ntk8u* pHashTable = nullptr;
Ntk8u* pHashTableHC = nullptr;
Ntk8u* pChainTableHC = nullptr;
Ntk8u* hashTables[2] = {};
Ntk8u* pEncodeSrc = nullptr;
Ntk8u* pEncodeDst = nullptr;
int encodeSrcLen = 0, encodeDstLen = 0;
Ntk8u* pDecodeSrc = nullptr;
Ntk8u* pDecodeDst = nullptr;
int decodeSrcLen = 0, decodeDstLen = 0;
int srcIdx = 0;
Ntk8u* pDict = nullptr;
int dictLen = 0;
psMapIterator<dictType_t> dictType;
} // namespace dclz4
using namespace dclz4;

// ---- Preparation ------------------------------------------------------------------------------

static Ntk8u* bytes(kxVector& vector) {
    return static_cast<Ntk8u*>(vector.data());
}

static Ntk8u* allocateTable(int size) {
    return static_cast<Ntk8u*>(psMalloc(size, 0, 0, MEM_OBJECT_IS_BUFFER));
}

static bool createHashTable() {
    int size = 0;
    if (!passed(ntksEncodeLZ4HashTableGetSize_8u(&size), "ntksEncodeLZ4HashTableGetSize_8u")) {
        return false;
    }
    pHashTable = allocateTable(size);
    return pHashTable && passed(ntksEncodeLZ4HashTableInit_8u(pHashTable, fileLen),
                                "ntksEncodeLZ4HashTableInit_8u");
}

// Made for every test of the family, also where no HC call follows.
static bool createTablesHC() {
    int hashSize = 0;
    int chainSize = 0;
    if (!passed(ntksEncodeLZ4HCHashTableGetSize_8u(&hashSize, &chainSize),
                "ntksEncodeLZ4HCHashTableGetSize_8u")) {
        return false;
    }
    pHashTableHC = allocateTable(hashSize);
    pChainTableHC = allocateTable(chainSize);
    hashTables[0] = pHashTableHC;
    hashTables[1] = pChainTableHC;
    return pHashTableHC && pChainTableHC;
}

static bool createTables() {
    if (!createHashTable()) {
        return false;
    }
    pEncodeSrc = bytes(fileBuf);
    pEncodeDst = bytes(comprBuf);
    pDecodeSrc = bytes(comprBuf);
    pDecodeDst = bytes(decomprBuf);
    return createTablesHC();
}

static void flushBuffers() {
    fileBuf.deleteVector();
    comprBuf.deleteVector();
    decomprBuf.deleteVector();
    for (Ntk8u** table : {&pHashTable, &pHashTableHC, &pChainTableHC}) {
        psFree(*table);
        *table = nullptr;
    }
}

static void putCells(const psString& variant, double ratio) {
    g_cstrm << psText(fileLen) << g_codeFile.valueString() << variant << psText(ratio);
}

bool TimdcLZ4::canStart() {
    m_isEncoder = functionName().contains("Encode");
    regParm(g_codeLen);
    regParm(g_codeFile);
    for (kxVector* buffer : {&fileBuf, &comprBuf, &decomprBuf}) {
        buffer->init(kx8u);
    }
    return true;
}

bool TimdcLZ4::initData() {
    if (!createBuffers({&fileBuf, &decomprBuf, &comprBuf})) {
        return false;
    }
    fileLen = readCodeFile(fileBuf.data());
    return fileLen >= 1 && createTables() && (m_isEncoder || encodeForDecoder());
}

bool TimdcLZ4::encodeForDecoder() {
    encodeSrcLen = fileLen;
    encodeDstLen = comprBuf.size();
    int out = comprBuf.size();
    if (!passed(ntksEncodeLZ4_8u(bytes(fileBuf), fileLen, bytes(comprBuf), &out, pHashTable),
                "ntksEncodeLZ4_8u")) {
        return false;
    }
    decodeSrcLen = out;
    return true;
}

void TimdcLZ4::flushData() {
    flushBuffers();
}

// The decoder is measured per compressed byte.
double TimdcLZ4::getDivisor() {
    return m_isEncoder ? encodeSrcLen : decodeSrcLen;
}

double TimdcLZ4::ratio() const {
    return m_isEncoder ? static_cast<double>(encodeSrcLen) / encodeDstLen
                       : static_cast<double>(decodeDstLen) / decodeSrcLen;
}

void TimdcLZ4::parmsToOstrm() {
    g_ostrm << "length=" << fileLen << " ";
    psTest::parmsToOstrm();
}

void TimdcLZ4::parmsToCstrm() {
    putCells("-", ratio());
}

bool TimdcLZ4Dict::canStart() {
    regParm(dictType);
    regParm(g_codeLen);
    regParm(g_codeFile);
    for (kxVector* buffer : {&fileBuf, &comprBuf, &decomprBuf, &dictBuf}) {
        buffer->init(kx8u);
    }
    dictType.resetMap();
    dictType.addMap("N", DICT_NONE);
    dictType.addMap("I", DICT_INTERNAL);
    dictType.addMap("E", DICT_EXTERNAL);
    dictType.init(DICT_NONE, "dict");
    for (const dictType_t type : {DICT_NONE, DICT_INTERNAL, DICT_EXTERNAL}) {
        dictType.add(type);
    }
    return true;
}

bool TimdcLZ4Dict::initData() {
    if (!createBuffers({&fileBuf, &decomprBuf, &comprBuf, &dictBuf})) {
        return false;
    }
    fileLen = readCodeFile(fileBuf.data());
    if (fileLen < 1) {
        return false;
    }
    memcpy(dictBuf.data(), fileBuf.data(), static_cast<size_t>(fileLen)); // of twice the room
    return createTables();
}

void TimdcLZ4Dict::flushData() {
    dictBuf.deleteVector();
    flushBuffers();
}

double TimdcLZ4Dict::getDivisor() {
    return encodeSrcLen;
}

void TimdcLZ4Dict::parmsToOstrm() {
    g_ostrm << "length=" << fileLen << " ";
    psTest::parmsToOstrm();
}

// The whole file's length over the compressed size of its second part alone: meant so, the figure
// is compared between builds of the library.
void TimdcLZ4Dict::parmsToCstrm() {
    putCells(dictType.valueString(), static_cast<double>(fileLen) / encodeDstLen);
}

// ---- Calls and init bodies --------------------------------------------------------------------

static int tinit_ntksEncodeLZ4_8u() {
    encodeSrcLen = fileLen;
    encodeDstLen = comprBuf.size();
    pEncodeSrc = bytes(fileBuf);
    pEncodeDst = bytes(comprBuf);
    return 0;
}
static int tcall_ntksEncodeLZ4_8u() {
    return ntksEncodeLZ4_8u(pEncodeSrc, encodeSrcLen, pEncodeDst, &encodeDstLen, pHashTable);
}
KX_TIMING_I(ntksEncodeLZ4_8u)

static int tinit_ntksEncodeLZ4Safe_8u() {
    return tinit_ntksEncodeLZ4_8u();
}
static int tcall_ntksEncodeLZ4Safe_8u() {
    return ntksEncodeLZ4Safe_8u(pEncodeSrc, &encodeSrcLen, pEncodeDst, &encodeDstLen, pHashTable);
}
KX_TIMING_I(ntksEncodeLZ4Safe_8u)

static int tinit_ntksDecodeLZ4_8u() {
    decodeDstLen = decomprBuf.size();
    pDecodeSrc = bytes(comprBuf);
    pDecodeDst = bytes(decomprBuf);
    return 0;
}
static int tcall_ntksDecodeLZ4_8u() {
    return ntksDecodeLZ4_8u(pDecodeSrc, decodeSrcLen, pDecodeDst, &decodeDstLen);
}
KX_TIMING_I(ntksDecodeLZ4_8u)

// The first part of the data is the larger half.
static int firstPartLen() {
    return fileLen - fileLen / 2;
}

static Ntk8u* chosenDict() {
    switch (dictType.value()) {
    case DICT_INTERNAL: return bytes(fileBuf);
    case DICT_EXTERNAL: return bytes(dictBuf);
    default: return nullptr;
    }
}

// The measured call encodes what follows the first h bytes, which came out as out bytes. It writes
// over them, from the start of the destination, with the capacity that they left: meant so.
static void setSecondPart(int h, int out) {
    encodeDstLen -= out;
    encodeSrcLen = fileLen - h;
    srcIdx = h;
    pEncodeSrc = bytes(fileBuf) + h;
}

static void setDict(int h) {
    pDict = chosenDict();
    dictLen = pDict ? h : 0;
}

// The status of a priming call is passed over here and below: the measured call tells.
static int tinit_ntksEncodeLZ4Dict_8u() {
    ntksEncodeLZ4DictHashTableInit_8u(pHashTable, fileLen);
    encodeDstLen = comprBuf.size();
    encodeSrcLen = fileLen / 2;
    const int h = firstPartLen();
    int out = comprBuf.size();
    ntksEncodeLZ4Dict_8u(bytes(fileBuf), 0, h, bytes(comprBuf), &out, pHashTable, nullptr, 0);
    setSecondPart(h, out);
    setDict(h);
    return 0;
}
static int tcall_ntksEncodeLZ4Dict_8u() {
    return ntksEncodeLZ4Dict_8u(pEncodeSrc, srcIdx, encodeSrcLen, pEncodeDst, &encodeDstLen,
                                pHashTable, pDict, dictLen);
}
KX_TIMING_I(ntksEncodeLZ4Dict_8u)

static int tinit_ntksEncodeLZ4DictSafe_8u() {
    ntksEncodeLZ4DictHashTableInit_8u(pHashTable, fileLen);
    encodeDstLen = comprBuf.size();
    encodeSrcLen = fileLen / 2;
    int h = firstPartLen();
    int out = comprBuf.size();
    ntksEncodeLZ4DictSafe_8u(bytes(fileBuf), 0, &h, bytes(comprBuf), &out, pHashTable, nullptr, 0);
    setSecondPart(h, out);
    setDict(h);
    return 0;
}
static int tcall_ntksEncodeLZ4DictSafe_8u() {
    return ntksEncodeLZ4DictSafe_8u(pEncodeSrc, srcIdx, &encodeSrcLen, pEncodeDst, &encodeDstLen,
                                    pHashTable, pDict, dictLen);
}
KX_TIMING_I(ntksEncodeLZ4DictSafe_8u)

static void setWholeFile() {
    tinit_ntksEncodeLZ4_8u();
    srcIdx = 0;
    dictLen = 0;
    pDict = nullptr;
}

// Without a dictionary the HC test encodes the whole file, where the other two still encode the
// first part untimed: meant so.
static int tinit_ntksEncodeLZ4HC_8u() {
    ntksEncodeLZ4HCHashTableInit_8u(hashTables);
    if (dictType.value() == DICT_NONE) {
        setWholeFile();
        return 0;
    }
    encodeDstLen = comprBuf.size();
    int h = firstPartLen();
    int out = comprBuf.size();
    ntksEncodeLZ4HC_8u(bytes(fileBuf), 0, &h, bytes(comprBuf), &out, hashTables, nullptr, 0, 0);
    setSecondPart(h, out);
    setDict(h);
    return 0;
}
static int tcall_ntksEncodeLZ4HC_8u() {
    return ntksEncodeLZ4HC_8u(pEncodeSrc, srcIdx, &encodeSrcLen, pEncodeDst, &encodeDstLen,
                              hashTables, pDict, dictLen, 0);
}
KX_TIMING_I(ntksEncodeLZ4HC_8u)

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dclz4";
    registerHooks();
    KX_REGISTER_I(TimdcLZ4, ntksEncodeLZ4_8u, source);
    KX_REGISTER_I(TimdcLZ4, ntksEncodeLZ4Safe_8u, source);
    KX_REGISTER_I(TimdcLZ4Dict, ntksEncodeLZ4Dict_8u, source);
    KX_REGISTER_I(TimdcLZ4Dict, ntksEncodeLZ4DictSafe_8u, source);
    KX_REGISTER_I(TimdcLZ4Dict, ntksEncodeLZ4HC_8u, source);
    KX_REGISTER_I(TimdcLZ4, ntksDecodeLZ4_8u, source);
    return true;
}();

// The LZ4 tests: their state, preparation, calls and registration. One file, because the calls
// and what resets their arguments must be read together.

#include "p_dclz4.h"

#include <cstring>

#include "dchooks.h"
#include "kxtiming.h"

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

long long TimdcLZ4File::length() const {
    return fileLen;
}

int TimdcLZ4File::readFile() {
    return fileLen = readInto(fileBuf.data());
}

static bool createHashTable() {
    int size = 0;
    return passed(ntksEncodeLZ4HashTableGetSize_8u(&size), "ntksEncodeLZ4HashTableGetSize_8u") &&
           isSize(size, "ntksEncodeLZ4HashTableGetSize_8u") && createState(pHashTable, size) &&
           passed(ntksEncodeLZ4HashTableInit_8u(pHashTable, fileLen),
                  "ntksEncodeLZ4HashTableInit_8u");
}

// Made for every test of the family, also where no HC call follows.
static bool createTablesHC() {
    int hashSize = 0;
    int chainSize = 0;
    if (!passed(ntksEncodeLZ4HCHashTableGetSize_8u(&hashSize, &chainSize),
                "ntksEncodeLZ4HCHashTableGetSize_8u") ||
        !isSize(hashSize, "ntksEncodeLZ4HCHashTableGetSize_8u") ||
        !isSize(chainSize, "ntksEncodeLZ4HCHashTableGetSize_8u") ||
        !createState(pHashTableHC, hashSize) || !createState(pChainTableHC, chainSize)) {
        return false;
    }
    hashTables[0] = pHashTableHC;
    hashTables[1] = pChainTableHC;
    return true;
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

bool TimdcLZ4::canStart() {
    m_isEncoder = functionName().contains("Encode");
    for (kxVector* buffer : {&fileBuf, &comprBuf, &decomprBuf}) {
        buffer->init(kx8u);
    }
    return dcFileTest::canStart();
}

bool TimdcLZ4::createBuffers() {
    return createVectors({&fileBuf, &decomprBuf, &comprBuf}, 2 * g_codeLen.value());
}

static bool encodeForDecoder() {
    encodeSrcLen = fileLen;
    encodeDstLen = comprBuf.size();
    int out = comprBuf.size();
    if (!passed(ntksEncodeLZ4_8u(bytes(fileBuf), fileLen, bytes(comprBuf), &out, pHashTable),
                "ntksEncodeLZ4_8u") ||
        !arePossible({{"destination length", out, 1, comprBuf.size()}}, "ntksEncodeLZ4_8u")) {
        return false;
    }
    decodeSrcLen = out;
    return true;
}

bool TimdcLZ4::prepare() {
    return createTables() && (m_isEncoder || encodeForDecoder());
}

void TimdcLZ4::flushData() {
    release({&fileBuf, &comprBuf, &decomprBuf}, {&pHashTable, &pHashTableHC, &pChainTableHC});
}

// The decoder is measured per compressed byte.
double TimdcLZ4::getDivisor() {
    return m_isEncoder ? encodeSrcLen : decodeSrcLen;
}

std::optional<double> TimdcLZ4::ratio() const {
    return m_isEncoder ? static_cast<double>(encodeSrcLen) / encodeDstLen
                       : static_cast<double>(decodeDstLen) / decodeSrcLen;
}

dcLengths TimdcLZ4::lengthsLeft() const {
    if (m_isEncoder) {
        return {{"source length", encodeSrcLen, 1, fileLen},
                {"destination length", encodeDstLen, 1, comprBuf.size()}};
    }
    return {{"destination length", decodeDstLen, 1, decomprBuf.size()}};
}

bool TimdcLZ4Dict::canStart() {
    regParm(dictType);
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
    return dcFileTest::canStart();
}

bool TimdcLZ4Dict::createBuffers() {
    return createVectors({&fileBuf, &decomprBuf, &comprBuf, &dictBuf}, 2 * g_codeLen.value());
}

bool TimdcLZ4Dict::prepare() {
    memcpy(dictBuf.data(), fileBuf.data(), static_cast<size_t>(fileLen)); // of twice the room
    return createTables();
}

void TimdcLZ4Dict::flushData() {
    release({&dictBuf, &fileBuf, &comprBuf, &decomprBuf},
            {&pHashTable, &pHashTableHC, &pChainTableHC});
}

double TimdcLZ4Dict::getDivisor() {
    return encodeSrcLen;
}

const psParameter* TimdcLZ4Dict::variant() const {
    return &dictType;
}

// Deliberate: the whole file's length over the compressed size of its second part alone. The figure
// is compared between builds of the library.
std::optional<double> TimdcLZ4Dict::ratio() const {
    return static_cast<double>(fileLen) / encodeDstLen;
}

// The second part of a single byte is empty.
dcLengths TimdcLZ4Dict::lengthsLeft() const {
    const int least = fileLen > 1 ? 1 : 0;
    return {{"length of the first part", srcIdx, 0, fileLen},
            {"source length", encodeSrcLen, least, fileLen},
            {"destination length", encodeDstLen, least, comprBuf.size()}};
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

// The measured call encodes what follows the first h bytes, which were encoded to out bytes.
// Deliberate: it overwrites these, from the start of the destination, with the capacity that they
// left, which is what a caller has who encodes both parts into one buffer.
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

// The status of a priming call is not checked here and below: the measured call fails if it did.
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

// Deliberate: without a dictionary the HC test encodes the whole file, while the other two encode
// the first part untimed there, too. Its figures with "N" are those of the encoder alone.
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

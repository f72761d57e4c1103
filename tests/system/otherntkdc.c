/* A second, tiny build of the compression library: every function answers at once. Variables of the
 * environment name functions that misbehave, as a faulty build may.
 */
#include <locale.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>

#include "ntkdc.h"

const NtkLibraryVersion* ntkdcGetLibVersion(void) {
    static const NtkLibraryVersion version = {"ntkDC", "another build", "Jan 31 2024"};
    return &version;
}

static int isNamed(const char* variable, const char* function) {
    const char* const names = getenv(variable);
    return names && strstr(names, function);
}

/* The locale that OTHER_NTKDC_LOCALE names becomes that of the process. */
static void chooseLocale(void) {
    const char* const name = getenv("OTHER_NTKDC_LOCALE");
    if (name && !setlocale(LC_ALL, name)) {
        abort();
    }
}

static NtkStatus answer(const char* function) {
    chooseLocale();
    if (isNamed("OTHER_NTKDC_FAULTS", function)) {
        raise(SIGSEGV);
    }
    return isNamed("OTHER_NTKDC_ERRORS", function) ? ntkStsBadSrcData : ntkStsNoErr;
}

/* Zeroes OTHER_NTKDC_STRAY_BYTES bytes behind the block, or before it if that is negative. */
static void stray(const Ntk8u* block, int length, const char* function) {
    if (isNamed("OTHER_NTKDC_STRAYS", function)) {
        const char* const text = getenv("OTHER_NTKDC_STRAY_BYTES");
        const int bytes = text ? atoi(text) : 1;
        Ntk8u* const from = (Ntk8u*)block + (bytes > 0 ? length : bytes);
        memset(from, 0, (size_t)abs(bytes));
    }
}

NtkStatus ntksAdler32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pAdler32) {
    *pAdler32 += pSrc[0] + (Ntk32u)srcLen;
    stray(pSrc, srcLen, __func__);
    return answer(__func__);
}

NtkStatus ntksCRC32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32) {
    *pCRC32 += pSrc[0] + (Ntk32u)srcLen;
    stray(pSrc, srcLen, __func__);
    return answer(__func__);
}

NtkStatus ntksCRC32C_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32C) {
    *pCRC32C += pSrc[0] + (Ntk32u)srcLen;
    stray(pSrc, srcLen, __func__);
    return answer(__func__);
}

NtkStatus ntksCRC32_BZ2_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32) {
    *pCRC32 += pSrc[0] + (Ntk32u)srcLen;
    stray(pSrc, srcLen, __func__);
    return answer(__func__);
}

NtkStatus ntksEncodeLZ4HashTableGetSize_8u(int* pSize) {
    *pSize = 64;
    return answer(__func__);
}

NtkStatus ntksEncodeLZ4HashTableInit_8u(Ntk8u* pHashTable, int srcLen) {
    *pHashTable = (Ntk8u)srcLen;
    stray(pHashTable, 64, __func__);
    return answer(__func__);
}

NtkStatus ntksEncodeLZ4DictHashTableInit_8u(Ntk8u* pHashTable, int srcLen) {
    *pHashTable = (Ntk8u)srcLen;
    return answer(__func__);
}

NtkStatus ntksEncodeLZ4HCHashTableGetSize_8u(int* pHashTableSize, int* pChainTableSize) {
    *pHashTableSize = *pChainTableSize = 64;
    return answer(__func__);
}

NtkStatus ntksEncodeLZ4HCHashTableInit_8u(Ntk8u** ppHashTables) {
    *ppHashTables[0] = *ppHashTables[1] = 0;
    return answer(__func__);
}

/* Every block of this build is half as long as its source, or as OTHER_NTKDC_LENGTH says. */
static NtkStatus shorten(int srcLen, Ntk8u* pDst, int* pDstLen, const char* function) {
    const char* const length = getenv("OTHER_NTKDC_LENGTH");
    *pDst = 0;
    *pDstLen = length ? atoi(length) : srcLen / 2 + 1;
    return answer(function);
}

NtkStatus ntksEncodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen,
                           Ntk8u* pHashTable) {
    (void)pSrc, (void)pHashTable;
    return shorten(srcLen, pDst, pDstLen, __func__);
}

NtkStatus ntksEncodeLZ4Safe_8u(const Ntk8u* pSrc, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                               Ntk8u* pHashTable) {
    (void)pSrc, (void)pHashTable;
    return shorten(*pSrcLen, pDst, pDstLen, __func__);
}

NtkStatus ntksEncodeLZ4Dict_8u(const Ntk8u* pSrc, int srcIdx, int srcLen, Ntk8u* pDst, int* pDstLen,
                               Ntk8u* pHashTable, const Ntk8u* pDict, int dictLen) {
    (void)pSrc, (void)srcIdx, (void)pHashTable, (void)pDict, (void)dictLen;
    return shorten(srcLen, pDst, pDstLen, __func__);
}

NtkStatus ntksEncodeLZ4DictSafe_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst,
                                   int* pDstLen, Ntk8u* pHashTable, const Ntk8u* pDict,
                                   int dictLen) {
    (void)pSrc, (void)srcIdx, (void)pHashTable, (void)pDict, (void)dictLen;
    return shorten(*pSrcLen, pDst, pDstLen, __func__);
}

NtkStatus ntksEncodeLZ4HC_8u(const Ntk8u* pSrc, int srcIdx, int* pSrcLen, Ntk8u* pDst, int* pDstLen,
                             Ntk8u** ppHashTables, const Ntk8u* pDict, int dictLen, int level) {
    (void)pSrc, (void)srcIdx, (void)ppHashTables, (void)pDict, (void)dictLen, (void)level;
    return shorten(*pSrcLen, pDst, pDstLen, __func__);
}

NtkStatus ntksDecodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen) {
    (void)pSrc;
    *pDst = 0;
    *pDstLen = 2 * srcLen;
    return answer(__func__);
}

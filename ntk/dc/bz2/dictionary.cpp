// Dictionary reduction and expansion: numbering the byte values that a block uses.
//
// The bzip2 format stores which of the 256 values occur in a block, and codes the block in an
// alphabet of just those: the move-to-front list begins with the values in use. Reducing the block
// to ranks first is equivalent, and lets the list begin with 0, 1, 2 .. for every block.
//
// Method: in both directions, a table of 256 bytes made from the in-use table, and a pass that
// replaces each byte (mapbytes.cpp). Every table entry is defined, even for values not in use and
// for ranks that no value has, so the input may hold anything.
//
// State: none between calls. Limits: in place, 256 values.

#include "ntkdcbz2.h"

#include <algorithm>

#include "spans.h"
#include "dictionary.h"
#include "bytekernels.h"

namespace ntk::bz2 {

namespace {

// For every value, the number of values in use below it. Returns the number in use.
int ranksOf(const Ntk8u inUse[256], Ntk8u table[256]) {
    int rank = 0;
    for (int value = 0; value < 256; value++) {
        table[value] = static_cast<Ntk8u>(rank);
        rank += inUse[value] != 0;
    }
    return rank;
}

} // namespace

int valuesInUse(const Ntk8u inUse[256], Ntk8u values[256]) {
    int size = 0;
    for (int value = 0; value < 256; value++) {
        if (inUse[value] != 0) {
            values[size++] = static_cast<Ntk8u>(value);
        }
    }
    return size;
}

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksReduceDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                    int* pSizeDictionary) {
    if (anyNull(inUse, pSrcDst, pSizeDictionary)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0) {
        return ntkStsBadSize;
    }
    Ntk8u table[256];
    *pSizeDictionary = ranksOf(inUse, table);
    mapBytesKernel.get()(table, pSrcDst, static_cast<std::size_t>(srcLen));
    return ntkStsNoErr;
}

NtkStatus ntksExpandDictionary_8u_I(const Ntk8u inUse[256], Ntk8u* pSrcDst, int srcLen,
                                    int sizeDictionary) {
    if (anyNull(inUse, pSrcDst)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0) {
        return ntkStsBadSize;
    }
    if (sizeDictionary < 0 || sizeDictionary > 256) {
        return ntkStsBadValue;
    }
    Ntk8u values[256];
    Ntk8u table[256];
    const int size = std::min(valuesInUse(inUse, values), sizeDictionary);
    for (int i = 0; i < 256; i++) {
        table[i] = i < size ? values[i] : static_cast<Ntk8u>(i);
    }
    mapBytesKernel.get()(table, pSrcDst, static_cast<std::size_t>(srcLen));
    return ntkStsNoErr;
}

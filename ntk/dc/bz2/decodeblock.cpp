// A block of the bzip2 format from its symbols to its bytes.
//
// The stages share one buffer: the symbols are decoded to move-to-front positions in the
// destination; move-to-front and the inverse Burrows-Wheeler transform then work in place.
// Expanding the dictionary takes no pass of its own: the list starts with the values in use instead
// of their ranks. Positions beyond those values are excluded by the check of the symbols, none of
// which may exceed the number of values.
//
// State: none between calls; the work buffer is that of the inverse transform.
// Limits: blocks of up to 2^24 bytes, as that transform. Any symbols, row and in-use table give an
// error status or some bytes.

#include "ntkdcbz2.h"

#include "spans.h"
#include "dictionary.h"
#include "bytekernels.h"
#include "ntkdcbwt.h"
#include "z1z2.h"

namespace ntk::bz2 {

namespace {

NtkStatus decodePositions(const Ntk16u* pSrc, int srcLen, int sizeDictionary, Span<Ntk8u>& dst) {
    if (sizeDictionary == 0 && srcLen > 0) {
        return ntkStsBadSrcData;
    }
    Span<const Symbol> src(atAnyAddress(pSrc), srcLen);
    const NtkStatus status = decodeZ1Z2(src, dst, static_cast<unsigned>(sizeDictionary));
    return status == ntkStsDstFull ? ntkStsDstTooSmall : status;
}

} // namespace

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksDecodeBlock_BZ2_16u8u(const Ntk16u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen,
                                    int idx, int sizeDictionary, const Ntk8u inUse[256],
                                    Ntk8u* pBuff) {
    if (anyNull(pSrc, pDst, pDstLen, inUse, pBuff)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    Ntk8u list[256] = {};
    if (valuesInUse(inUse, list) != sizeDictionary) {
        return ntkStsBadValue;
    }
    Span<Ntk8u> dst(pDst, *pDstLen);
    NtkStatus status = decodePositions(pSrc, srcLen, sizeDictionary, dst);
    if (status != ntkStsNoErr) {
        return status;
    }
    const auto length = static_cast<std::size_t>(dst.p - pDst);
    mtfInverseKernel.get()(pDst, pDst, length, list);
    status = ntksBWTInv_8u(pDst, pDst, static_cast<int>(length), idx, pBuff);
    if (status == ntkStsNoErr) {
        *pDstLen = static_cast<int>(length);
    }
    return status;
}

// LZ4 block decoder, on liblz4. Format: see encode.cpp.
//
// liblz4 checks every length and distance of the block against both buffers, so that the source may
// come from anywhere. It does not tell why it refuses a block; that is found out afterwards, by a
// walk over the sequences that adds up what they would decode to.
//
// Limit: liblz4 lets a distance of 0 pass and writes undefined bytes for it. To refuse it would
// take a walk over every block.

#include "ntkdc.h"

#include "arguments.h"
#include "blockreader.h"

namespace ntk::lz4 {

namespace {

NtkStatus whyRefused(const Ntk8u* block, int length, int capacity) {
    BlockReader reader(block, static_cast<std::size_t>(length));
    Sequence s{};
    std::size_t decoded = 0;
    while (reader.next(s)) {
        decoded += s.literalLength;
        if (s.matchLength == 0) {
            return decoded > static_cast<std::size_t>(capacity) ? ntkStsDstTooSmall
                                                                : ntkStsBadSrcData;
        }
        if (s.offset > decoded) {
            return ntkStsBadSrcData;
        }
        decoded += s.matchLength;
    }
    return ntkStsBadSrcData;
}

} // namespace

} // namespace ntk::lz4

using namespace ntk;
using namespace ntk::lz4;

NtkStatus ntksDecodeLZ4_8u(const Ntk8u* pSrc, int srcLen, Ntk8u* pDst, int* pDstLen) {
    if (anyNull(pSrc, pDst, pDstLen)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0 || *pDstLen < 0) {
        return ntkStsBadSize;
    }
    const int length = LZ4_decompress_safe(chars(pSrc), chars(pDst), srcLen, *pDstLen);
    if (length < 0) {
        return whyRefused(pSrc, srcLen, *pDstLen);
    }
    *pDstLen = length;
    return ntkStsNoErr;
}

// LZ4 block decoder, on liblz4. Format: see encode.cpp.
//
// liblz4 checks every length and distance of the block against both buffers, so the source need not
// be trusted. It does not report why it rejects a block; that is determined afterwards, by adding
// up the lengths that the sequences decode to.
//
// Limit: liblz4 accepts a distance of 0 and writes undefined bytes for it. Rejecting it would take
// a pass over every block.

#include "ntkdc.h"

#include "arguments.h"
#include "blockreader.h"

namespace ntk::lz4 {

namespace {

// liblz4 takes no match so near to the end of a block: counted from its distance on, and behind it.
// (Its own encoder leaves 5 literals or more behind the last match.)
constexpr std::ptrdiff_t leastFromDistance = 8;
constexpr std::size_t leastBehindMatch = 4;

bool isTooNearTheEnd(const Sequence& match, const Ntk8u* end, std::size_t left) {
    const Ntk8u* const distance = match.literals + match.literalLength;
    return end - distance < leastFromDistance || left < leastBehindMatch;
}

NtkStatus whyRejected(const Ntk8u* block, int length, int capacity) {
    const auto blockBytes = static_cast<std::size_t>(length);
    BlockReader reader(block, blockBytes);
    Sequence s{};
    std::size_t decoded = 0;
    while (reader.next(s)) {
        decoded += s.literalLength;
        if (s.matchLength == 0) {
            return decoded > static_cast<std::size_t>(capacity) ? ntkStsDstTooSmall
                                                                : ntkStsBadSrcData;
        }
        if (s.offset > decoded ||
            isTooNearTheEnd(s, block + length, blockBytes - reader.position())) {
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
        return whyRejected(pSrc, srcLen, *pDstLen);
    }
    *pDstLen = length;
    return ntkStsNoErr;
}

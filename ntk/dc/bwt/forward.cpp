// Forward Burrows-Wheeler transform, over cyclic rotations as in bzip2.
//
// Method (Burrows and Wheeler, 1994, A Block-sorting Lossless Data Compression Algorithm): sort all
// rotations of the text; the last byte of each, in that order, is the transform, and the row of the
// unrotated text makes it invertible.
//
// Equal rotations would defeat every sort. They occur only if the text is a power of a shorter
// word; then the word (the primitive root) is transformed instead and every byte of the result
// repeated, since each of its rotations begins at that many places of the text. So the sorts
// (sorts.h) only see words whose rotations all differ: the two-stage sort (twostage.cpp,
// bstarsort.h) and the suffix sort (suffixsort.cpp).
//
// The hints for the suffix sort and for the automatic choice do the same: whatever the two-stage
// sort does not give up, it sorts in less time than libdivsufsort does (geo 34 against 80 clocks a
// byte, book1 37 against 94, trans 69 against 80, its texts with most repeats last). To give up
// earlier did not help: with a quarter of the rotations in equal groups, in place of half, trans
// took 112.
//
// State: all of it in the caller's buffer, see workspace.h. The text is copied there twice in a
// row, so that every rotation is contiguous and the result may overwrite the source.
//
// Limits: maxTextLen; the buffer takes about 20 bytes per byte of text and 260 KiB.

#include "ntkdcbwt.h"

#include <cstring>

#include "../callerblock.h"
#include "sorts.h"
#include "words.h"

namespace ntk::bwt {

namespace {

bool isLength(int srcLen) {
    return srcLen >= 0 && srcLen <= maxTextLen;
}

// Runs the sort chosen and, if it gives up, the other one. Returns the row of the unrotated text.
int sortRotations(const Workspace& work, int n, NtkBWTSortAlgorithmHint hint, Ntk8u* dst) {
    int idx = -1;
    if (hint == ntkBWTItohTanakaLimSort) {
        idx = twoStageSort(work, n, Effort::limited, dst);
    } else if (hint != ntkBWTItohTanakaUnlimSort) {
        idx = twoStageSort(work, n, Effort::moderate, dst);
    }
    if (idx < 0 && hint != ntkBWTItohTanakaUnlimSort) {
        idx = suffixSort(work, n, dst);
    }
    return idx < 0 ? twoStageSort(work, n, Effort::unlimited, dst) : idx;
}

// Turns the transform of a word into that of its power, in place, from the end.
void repeatBytes(Ntk8u* dst, int wordLen, int times) {
    const auto count = static_cast<std::size_t>(times);
    for (int row = wordLen - 1; row >= 0; --row) {
        std::memset(dst + static_cast<std::size_t>(row) * count, dst[row], count);
    }
}

int transform(const Ntk8u* src, Ntk8u* dst, int srcLen, const Workspace& work,
              NtkBWTSortAlgorithmHint hint) {
    const int wordLen = primitiveRootLen(src, srcLen);
    if (wordLen == 1) {
        std::memmove(dst, src, static_cast<std::size_t>(srcLen));
        return 0;
    }
    const auto length = static_cast<std::size_t>(wordLen);
    std::memcpy(work.text, src, length);
    std::memcpy(work.text + length, src, length);
    std::memset(work.text + 2 * length, 0, textPadding);
    const int idx = sortRotations(work, wordLen, hint, dst);
    const int times = srcLen / wordLen;
    if (times > 1) {
        repeatBytes(dst, wordLen, times);
    }
    return idx * times;
}

} // namespace

} // namespace ntk::bwt

using namespace ntk;
using namespace ntk::bwt;

NtkStatus ntksBWTFwdGetSize_8u(int srcLen, int* pSize) {
    if (pSize == nullptr) {
        return ntkStsNullPtr;
    }
    if (!isLength(srcLen)) {
        return ntkStsBadSize;
    }
    Arena arena(nullptr);
    const Workspace work(arena, static_cast<std::size_t>(srcLen));
    *pSize = static_cast<int>(arena.bytesNeeded());
    return ntkStsNoErr;
}

NtkStatus ntksBWTFwd_SelectSort_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx,
                                   Ntk8u* pBuff, NtkBWTSortAlgorithmHint hint) {
    if (anyNull(pSrc, pDst, pIdx, pBuff)) {
        return ntkStsNullPtr;
    }
    if (!isLength(srcLen)) {
        return ntkStsBadSize;
    }
    if (hint < ntkBWTItohTanakaLimSort || hint > ntkBWTAutoSort) {
        return ntkStsBadValue;
    }
    Arena arena(pBuff);
    const Workspace work(arena, static_cast<std::size_t>(srcLen));
    *pIdx = srcLen == 0 ? 0 : transform(pSrc, pDst, srcLen, work, hint);
    return ntkStsNoErr;
}

NtkStatus ntksBWTFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx, Ntk8u* pBuff) {
    return ntksBWTFwd_SelectSort_8u(pSrc, pDst, srcLen, pIdx, pBuff, ntkBWTAutoSort);
}

/* Burrows-Wheeler transform: part of libntkdc.so.12, included by ntkdc.h.
 *
 * The transform of bzip2: the cyclic rotations of a text are sorted by unsigned byte values; the
 * result is the last byte of each, and the row of the unrotated text. No end mark is added. If the
 * text is one word repeated, equal rotations occupy consecutive rows, and the row given is the
 * first of these.
 *
 * Common to all:
 * - A text has 0 to 16777216 (2 to the power of 24) bytes. An empty one has row 0.
 * - pSrc and pDst: srcLen bytes each; they may be the same buffer, otherwise must not overlap.
 * - pBuff: a work buffer of the size that the GetSize function gives for srcLen or for any larger
 *   length. Its contents do not matter before a call and are undefined after it; it must not
 * overlap anything else.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length out of range; those named at
 *   the function. After an error nothing has been written.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How the rotations are sorted. The result is the same with each. */
typedef enum {
    /* Itoh and Tanaka's two-stage sort with limited effort: if rotations stay equal for long, it
     * gives up and the suffix sort does the work. Fastest on texts with few long repeats. */
    ntkBWTItohTanakaLimSort = 0,
    /* The two-stage sort without that limit: rotations that stay equal for long are sorted by
     * prefix doubling. Takes no more than about n log n log n steps on any text. */
    ntkBWTItohTanakaUnlimSort = 1,
    /* A suffix sort of the least rotation (libdivsufsort), n log n steps on every text, where the
     * two-stage sort gives up. The suffix sort allocates 257 KiB during the call. If there is no
     * memory, the two-stage sort without limit does the work; the result is the same. */
    ntkBWTSuffixSort = 2,
    /* The same: the two-stage sort, which gives up to the suffix sort on very repetitive texts. */
    ntkBWTAutoSort = 3
} NtkBWTSortAlgorithmHint;

/* Size in bytes of the buffer of ntksBWTFwd_8u and, for every hint, ntksBWTFwd_SelectSort_8u.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen is out of range.
 */
NTK_API NtkStatus ntksBWTFwdGetSize_8u(int srcLen, int* pSize);

/* Transforms the text with ntkBWTAutoSort.
 * pIdx: receives the row of the unrotated text.
 */
NTK_API NtkStatus ntksBWTFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx,
                                Ntk8u* pBuff);

/* Transforms the text, sorted as the hint says.
 * Also returns ntkStsBadValue for a hint that is none of the above.
 */
NTK_API NtkStatus ntksBWTFwd_SelectSort_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx,
                                           Ntk8u* pBuff, NtkBWTSortAlgorithmHint hint);

/* Size in bytes of the buffer of ntksBWTInv_8u.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if srcLen is out of range.
 */
NTK_API NtkStatus ntksBWTInvGetSize_8u(int srcLen, int* pSize);

/* Restores the text. The source may hold anything: nothing outside the buffers is read or written,
 * and the time taken does not depend on whether the source is a transform.
 *
 * idx: the row of the text, 0 to srcLen - 1 (0 for an empty source). Any other row gives the
 *   rotation in that row. A source that is no transform gives bytes of the source: the first half
 * of the result follows the links from the given row to later rotations, the second half, from the
 *   end backwards, the links to earlier ones.
 * Also returns ntkStsBadValue if idx is out of range.
 */
NTK_API NtkStatus ntksBWTInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int idx, Ntk8u* pBuff);

#ifdef __cplusplus
}
#endif

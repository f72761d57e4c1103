/* Burrows-Wheeler transform: part of libntkdc.so.12, included by ntkdc.h.
 *
 * The transform of bzip2: the cyclic rotations of a text are sorted, byte values being unsigned;
 * the result is the last byte of each, and the row at which the unrotated text stands. No end mark
 * is added. Where the text is one word several times over, equal rotations share a stretch of rows,
 * and the row given is the first of it.
 *
 * Common to all:
 * - A text has 0 to 16777216 (2 to the power of 24) bytes. An empty one has row 0.
 * - pSrc and pDst: srcLen bytes each; they may be the same buffer, otherwise must not overlap.
 * - pBuff: a block of the caller's, of the size that the GetSize function gives for srcLen or for
 *   any larger length. Its contents do not matter before a call and are of no use after it; it must
 *   not overlap anything else.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length out of range; those named at
 *   the function. After an error nothing was written.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How the rotations are sorted. The result is the same with each. */
typedef enum {
    /* Itoh and Tanaka's two-stage sort with limited effort: where the rotations that it compares
     * stay equal for long, it gives up and the suffix sort does the work. Fastest on texts with few
     * long repeats. */
    ntkBWTItohTanakaLimSort = 0,
    /* The two-stage sort without that limit: what stays equal for long is ordered by doubling the
     * compared length. No text takes it more than about n log n log n steps. */
    ntkBWTItohTanakaUnlimSort = 1,
    /* A suffix sort of the least rotation (libdivsufsort); n log n steps on every text. It takes
     * 257 KiB from the heap for the time of the call. Without them the two-stage sort does
     * the work, so that the result is the same. */
    ntkBWTSuffixSort = 2,
    /* One of the above, by what the text looks like. */
    ntkBWTAutoSort = 3
} NtkBWTSortAlgorithmHint;

/* Size in bytes of the buffer of ntksBWTFwd_8u and, for every hint, ntksBWTFwd_SelectSort_8u.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen is out of range.
 */
NTK_API NtkStatus ntksBWTFwdGetSize_8u(int srcLen, int* pSize);

/* Transforms the text with ntkBWTAutoSort.
 * pIdx: set to the row of the unrotated text.
 */
NTK_API NtkStatus ntksBWTFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx,
                                Ntk8u* pBuff);

/* Transforms the text, sorting as the hint says.
 * Also returns ntkStsBadValue for another hint.
 */
NTK_API NtkStatus ntksBWTFwd_SelectSort_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int* pIdx,
                                           Ntk8u* pBuff, NtkBWTSortAlgorithmHint hint);

/* Size in bytes of the buffer of ntksBWTInv_8u.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when srcLen is out of range.
 */
NTK_API NtkStatus ntksBWTInvGetSize_8u(int srcLen, int* pSize);

/* Gives back the text. The source may hold anything: nothing outside the buffers is read or
 * written, and the time does not depend on its being a transform.
 *
 * idx: the row, 0 to srcLen - 1 (0 for an empty source). Another row than the text's gives the
 *   rotation that stands in it. Bytes that are no transform give bytes out of the source: the first
 *   half of the result goes from the row given to its successor in the text, and so on, the second
 *   half in the same way from the end to predecessors.
 * Also returns ntkStsBadValue when idx is out of its range.
 */
NTK_API NtkStatus ntksBWTInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int idx, Ntk8u* pBuff);

#ifdef __cplusplus
}
#endif

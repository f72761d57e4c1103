/* LZO: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Streams in the LZO1X format of liblzo2, without header, length or checksum: the decoder's caller
 * knows the stream's length and a bound of the data's. Several threads make a frame of several such
 * streams (see ntk/dc/lzo/encode.cpp). Source of the method: M. F. X. J. Oberhumer's LZO.
 *
 * Common to all:
 * - Lengths are Ntk32u. No source to encode may exceed 0x7e000000 (2113929216) bytes.
 * - Source, destination, state and lengths must not overlap one another.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length out of range; those named at
 *   the function. On an error *pDstLen stays as it was; what the destination holds is undefined.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How the encoder searches and on how many threads. */
typedef enum {
    ntkLZOST = 0,  /* one thread, a dictionary of 2^14 entries */
    ntkLZOMT = 1,  /* the search of ntkLZOST, the source split over ntkGetNumThreads threads */
    ntkLZOST1X = 2 /* one thread, a dictionary of 2^11 entries: faster, longer streams */
} NtkLZOMethod;

/* Size in bytes of the encoder's state. The state has room for the longest stream, so it is larger
 * than the longest source by 128 KiB and more, with ntkLZOMT by 128 KiB per piece of 32 KiB (64
 * pieces at most). What is not needed is not touched.
 * maxInputLen: length in bytes of the longest source to come.
 * Returns also ntkStsBadValue for another method.
 */
NTK_API NtkStatus ntksEncodeLZOGetSize(NtkLZOMethod method, Ntk32u maxInputLen, Ntk32u* pStateSize);

/* Prepares a state of the size that ntksEncodeLZOGetSize gives for the same arguments.
 * Returns also ntkStsBadValue for another method.
 */
NTK_API NtkStatus ntksEncodeLZOInit_8u(NtkLZOMethod method, Ntk32u maxInputLen, Ntk8u* pState);

/* Encodes the source into one stream; nothing is carried over from one call to the next.
 *
 * pSrc: srcLen bytes, 0 to the state's maxInputLen (ntkStsBadSize for more).
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry and the length of the stream on return.
 *   The stream of n bytes has at most n + n/16 + 67 bytes, plus 7 and 75 per piece where it is
 *   split. A smaller capacity serves when the stream fits it; unless all of that bound is there,
 *   the call copies the stream once.
 * pState: prepared by ntksEncodeLZOInit_8u, used by one call at a time.
 * With ntkLZOMT the source is split into as many pieces as there are threads, of 32 KiB or more
 * each; all but one piece run on threads made for the call. With one piece no thread is made and
 * the stream is that of ntkLZOST.
 * Also returns ntkStsDstTooSmall when the stream does not fit; ntkStsBadValue when pState was not
 * prepared.
 */
NTK_API NtkStatus ntksEncodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen,
                                   Ntk8u* pState);

/* Decodes one stream of any method, or of liblzo2's LZO1X encoders. The source may hold anything:
 * nothing outside the two buffers is read or written. The pieces of a split stream are shared out
 * over ntkGetNumThreads threads.
 *
 * pSrc: srcLen bytes, the whole stream.
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry and the number of bytes decoded on
 *   return.
 * Also returns ntkStsDstTooSmall when the stream asks for more than the capacity before any other
 * fault is met; ntkStsBadSrcData when it is not a stream; a source of no bytes is none.
 */
NTK_API NtkStatus ntksDecodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen);

/* As ntksDecodeLZO_8u, which in this build checks just as much. */
NTK_API NtkStatus ntksDecodeLZOSafe_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst,
                                       Ntk32u* pDstLen);

#ifdef __cplusplus
}
#endif

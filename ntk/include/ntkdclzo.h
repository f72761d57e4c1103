/* LZO: part of libntkdc.so.12, included by ntkdc.h.
 *
 * Streams in the LZO1X format of liblzo2, without header, length or checksum: the caller of the
 * decoder must know the length of the stream and an upper bound for the length of the data. Several
 * threads produce a frame of several such streams (see ntk/dc/lzo/encode.cpp). Source of the
 * method: M. F. X. J. Oberhumer's LZO.
 *
 * Common to all:
 * - Lengths are Ntk32u. No source to encode may exceed 0x7e000000 (2113929216) bytes.
 * - Source, destination, state and lengths must not overlap one another.
 * - Threads that the system cannot start are done without: the others take their share.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a length out of range; those named at
 *   the function. After an error *pDstLen is unchanged and the contents of the destination
 * undefined.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The size of the encoder's dictionary, and whether it uses threads. */
typedef enum {
    ntkLZOST = 0,  /* one thread, a dictionary of 2^14 entries */
    ntkLZOMT = 1,  /* as ntkLZOST, with the source split among ntkGetNumThreads threads */
    ntkLZOST1X = 2 /* one thread, a dictionary of 2^11 entries: faster, longer streams */
} NtkLZOMethod;

/* Size in bytes of the encoder's state. The state has room for the longest stream, so it is larger
 * than the longest source by 128 KiB and more, with ntkLZOMT by 128 KiB per piece of 32 KiB (64
 * pieces at most). Parts of it that a call does not need are not touched.
 * maxInputLen: length in bytes of the longest source to come.
 * Also returns ntkStsBadValue if method is none of the above.
 */
NTK_API NtkStatus ntksEncodeLZOGetSize(NtkLZOMethod method, Ntk32u maxInputLen, Ntk32u* pStateSize);

/* Initialises a state of the size that ntksEncodeLZOGetSize gives for the same arguments.
 * Also returns ntkStsBadValue if method is none of the above.
 */
NTK_API NtkStatus ntksEncodeLZOInit_8u(NtkLZOMethod method, Ntk32u maxInputLen, Ntk8u* pState);

/* Encodes the source into one stream; nothing is carried over from one call to the next.
 *
 * pSrc: srcLen bytes, 0 to the state's maxInputLen (ntkStsBadSize for more).
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry and the length of the stream on return.
 *   The stream of n bytes has at most n + n/16 + 67 bytes, plus 7 and 75 per piece if it is split.
 *   A smaller capacity is enough if the stream fits; below that bound, the call copies the stream
 *   once.
 * pState: initialised by ntksEncodeLZOInit_8u, used by one call at a time.
 * With ntkLZOMT the source is split into as many pieces as there are threads, of 32 KiB or more
 * each; the caller's thread and threads started for the call encode them. One piece starts no
 * thread and gives the stream of ntkLZOST. Also returns ntkStsDstTooSmall if the stream does not
 * fit; ntkStsBadValue if pState was not initialised.
 */
NTK_API NtkStatus ntksEncodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen,
                                   Ntk8u* pState);

/* Decodes one stream of any method, or of liblzo2's LZO1X encoders. The source may hold anything:
 * nothing outside the two buffers is read or written. The pieces of a split stream are distributed
 * among ntkGetNumThreads threads.
 *
 * pSrc: srcLen bytes, the whole stream.
 * pDst, pDstLen: *pDstLen is the capacity of pDst on entry and the number of bytes decoded on
 *   return.
 * Also returns ntkStsDstTooSmall if the stream exceeds the capacity before any other fault is
 * found; ntkStsBadSrcData if the source is not a valid stream; an empty source is not.
 */
NTK_API NtkStatus ntksDecodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen);

/* As ntksDecodeLZO_8u, which in this build checks just as much. */
NTK_API NtkStatus ntksDecodeLZOSafe_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst,
                                       Ntk32u* pDstLen);

#ifdef __cplusplus
}
#endif

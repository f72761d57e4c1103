/* ZFP blocks: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A three-dimensional field of single-precision values is coded as blocks of 4 x 4 x 4 values, one
 * block a call, into one stream of bits without a header. Blocks at the faces of a field whose
 * sizes are no multiples of 4 must be filled up by the caller. The stream is that of libzfp (codec
 * 5) for the same blocks in the same order: coded with x running fastest, then y, then z, the
 * blocks of a whole field are what zfp_compress makes of it.
 *
 * The state is a block of the caller's. It refers to the buffer of the stream and to itself:
 * neither may be moved or freed before the last call. A state that no Init function made is refused
 * by a mark that it lacks.
 *
 * Common statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a negative length; ntkStsBadValue
 * for an argument out of its range and for a state that is not made or of the other direction;
 * ntkStsNotImplemented from the Init functions when the libzfp at hand is not of the version (first
 * two numbers) or the word size (8 bits) that this library was built for.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of a state, the same for both directions. */
NTK_API NtkStatus ntksZfpGetSize_32f(int* pSize);

/* Begins a stream to be written to pDst, dstLen bytes, 0 or more. Tolerance 0 holds until a mode is
 * set.
 */
NTK_API NtkStatus ntksEncodeZfpInit_32f(Ntk8u* pDst, int dstLen, Ntk8u* pState);

/* Begins to read the stream at pSrc, srcLen bytes, 0 or more. The mode is not in the stream: the
 * one of the encoder must be set.
 */
NTK_API NtkStatus ntksDecodeZfpInit_32f(const Ntk8u* pSrc, int srcLen, Ntk8u* pState);

/* Fixed rate: every block takes the same number of bits, 64 times bitsPerValue, rounded, but at
 * least 9. bitsPerValue: more than 0, at most 32.
 *
 * A mode, this or the other, holds from the next block on. A decoder must change it at the same
 * blocks as the encoder.
 */
NTK_API NtkStatus ntksZfpSetRate_32f(double bitsPerValue, Ntk8u* pState);

/* Fixed accuracy: every block takes the bits that it needs for no value to be off by more than the
 * tolerance (or than the format's 30 bits below the largest value of a block allow). tolerance: 0
 * or more, finite; it is rounded down to a power of 2.
 */
NTK_API NtkStatus ntksZfpSetAccuracy_32f(double tolerance, Ntk8u* pState);

/* Appends a block to the stream.
 *
 * pSrc: the block's first value. Value (x, y, z) is pSrc[x + y * stepY + z * stepZ], x, y and z
 *   from 0 to 3; the steps count values and may be anything.
 *   What is coded for a block that holds an infinity or a NaN is undefined, its length apart.
 * Also returns ntkStsDstTooSmall when the block does not fit (the stream then ends before it, and
 * smaller blocks may follow), and ntkStsBadValue after ntksEncodeZfpFlush_32f.
 */
NTK_API NtkStatus ntksEncodeZfp444_32f(const Ntk32f* pSrc, int stepY, int stepZ, Ntk8u* pState);

/* Ends a stream: fills its last byte with zero bits. Once ended it stays as it is. */
NTK_API NtkStatus ntksEncodeZfpFlush_32f(Ntk8u* pState);

/* Takes the next block from the stream. The stream may hold anything: any bits are a block of some
 * values, and nothing outside the buffer is read.
 *
 * pDst, stepY, stepZ: as those of ntksEncodeZfp444_32f. Only the 64 values are written.
 * Also returns ntkStsBadSrcData when the block does not end within the buffer; stream and
 * destination are then as they were.
 */
NTK_API NtkStatus ntksDecodeZfp444_32f(Ntk32f* pDst, int stepY, int stepZ, Ntk8u* pState);

/* Length in bytes of what was written or read so far, a byte begun counting as one. */
NTK_API NtkStatus ntksZfpGetLength_32f(int* pLength, const Ntk8u* pState);

#ifdef __cplusplus
}
#endif

/* ZFP blocks: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A three-dimensional field of single-precision values is coded as blocks of 4 x 4 x 4 values, one
 * block per call, in one bit stream without a header. If the sizes of a field are not multiples of
 * 4, the caller must pad the blocks at its faces. The stream is that of libzfp (codec 5) for the
 * same blocks in the same order: if the blocks of a whole field are coded with x varying fastest,
 * then y, then z, it is the stream of zfp_compress.
 *
 * The caller provides the state. It refers to the buffer of the stream and to itself: neither may
 * be moved or freed before the last call. A state that no Init function has initialised is
 * rejected, because it lacks their mark.
 *
 * Common statuses: ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize for a negative length; ntkStsBadValue
 * for an argument out of range and for a state that is not initialised, or for the other direction;
 * ntkStsNotImplemented from the Init functions if the libzfp found at run time does not have the
 * version (first two numbers) or the word size (8 bits) that this library was built for.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of a state, the same for both directions. */
NTK_API NtkStatus ntksZfpGetSize_32f(int* pSize);

/* Begins writing a stream to pDst, which has dstLen bytes, 0 or more. The mode is fixed accuracy
 * with tolerance 0 until one is set.
 */
NTK_API NtkStatus ntksEncodeZfpInit_32f(Ntk8u* pDst, int dstLen, Ntk8u* pState);

/* Begins reading the stream at pSrc, which has srcLen bytes, 0 or more. The stream does not contain
 * the mode: set that of the encoder.
 */
NTK_API NtkStatus ntksDecodeZfpInit_32f(const Ntk8u* pSrc, int srcLen, Ntk8u* pState);

/* Fixed rate: every block takes the same number of bits, 64 times bitsPerValue, rounded, but at
 * least 9. bitsPerValue: more than 0, at most 32.
 *
 * Either mode applies from the next block on. A decoder must change it at the same blocks as the
 * encoder.
 */
NTK_API NtkStatus ntksZfpSetRate_32f(double bitsPerValue, Ntk8u* pState);

/* Fixed accuracy: every block takes as many bits as it needs for no error to exceed the tolerance
 * (or what the format's 30 bits below the largest value of a block allow). tolerance: 0 or more,
 * finite; it is rounded down to a power of 2.
 */
NTK_API NtkStatus ntksZfpSetAccuracy_32f(double tolerance, Ntk8u* pState);

/* Appends a block to the stream.
 *
 * pSrc: the block's first value, at any address. Value (x, y, z) is pSrc[x + y * stepY + z *
 * stepZ], with x, y and z from 0 to 3; the steps count values and may be any numbers. If the block
 * contains an infinity or a NaN, its encoding is undefined but of valid length. Also returns
 * ntkStsDstTooSmall if the block does not fit (the stream then ends before it, and shorter blocks
 * may follow), and ntkStsBadValue after ntksEncodeZfpFlush_32f.
 */
NTK_API NtkStatus ntksEncodeZfp444_32f(const Ntk32f* pSrc, int stepY, int stepZ, Ntk8u* pState);

/* Ends a stream by filling its last byte with zero bits. A second flush does nothing. */
NTK_API NtkStatus ntksEncodeZfpFlush_32f(Ntk8u* pState);

/* Decodes the next block of the stream. The stream may hold anything: any bits decode to some
 * block, and nothing outside the buffer is read.
 *
 * pDst, stepY, stepZ: as for ntksEncodeZfp444_32f. Only the 64 values are written.
 * Also returns ntkStsBadSrcData if the block does not end within the buffer; stream and destination
 * are then unchanged.
 */
NTK_API NtkStatus ntksDecodeZfp444_32f(Ntk32f* pDst, int stepY, int stepZ, Ntk8u* pState);

/* Length in bytes of what was written or read so far, including a partial byte. */
NTK_API NtkStatus ntksZfpGetLength_32f(int* pLength, const Ntk8u* pState);

#ifdef __cplusplus
}
#endif

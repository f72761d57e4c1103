/* LZSS, streaming: part of libntkdc.so.12, included by ntkdc.h.
 *
 * A stream of literals and matches of 3 to 386 bytes at distances up to 16383; the comment at the
 * top of ntk/dc/lzss/encode.cpp specifies the format bit by bit. Source of the method: J. A.
 * Storer, T. G. Szymanski, "Data Compression via Textual Substitution", 1982. A stream contains
 * neither its length nor that of its data.
 *
 * Common to the encoding and decoding calls:
 * - *ppSrc, *pSrcLen, *ppDst, *pDstLen: source and destination; advanced past what the call has
 * taken and written. The window is in the state: both may be split anywhere, and a piece may be
 * moved or freed after the call. How they are split does not change the stream. After an error the
 * arguments are unchanged; the destination may have been written to, and data not yet delivered are
 * lost.
 * - Source, destination and state must not overlap.
 * - pState: a block of the size that ntksLZSSGetSize_8u gives, for encoding or decoding, whichever
 *   it was last initialised for. The length of the data is unlimited.
 * - Statuses: ntkStsNoErr; ntkStsNullPtr for a null pointer or a pointer to one; ntkStsBadSize if a
 *   length is negative; ntkStsDstFull (a warning: the destination is full; call again with more
 * room, even with an empty source); ntkStsBadValue if the state is not initialised for the call.
 */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of a state. Returns ntkStsNoErr; ntkStsNullPtr. */
NTK_API NtkStatus ntksLZSSGetSize_8u(int* pSize);

/* Initialises the state for an encoder, at the start of a stream.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksEncodeLZSSInit_8u(Ntk8u* pState);

/* Takes the source and writes what can be written: because the encoder looks ahead, up to 3088
 * bytes of the source are encoded by later calls or by a flush. After ntkStsNoErr the whole source
 * is taken.
 */
NTK_API NtkStatus ntksEncodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                                    Ntk8u* pState);

/* Writes everything that was taken: after ntkStsNoErr the output so far decodes to all of it. The
 * stream may be continued after a flush, at the cost of a few bytes, and also after ntkStsDstFull
 * without completing the flush. A second flush writes nothing.
 */
NTK_API NtkStatus ntksEncodeLZSSFlush_8u(Ntk8u** ppDst, int* pDstLen, Ntk8u* pState);

/* Initialises the state for a decoder, at the start of a stream.
 * Returns ntkStsNoErr; ntkStsNullPtr.
 */
NTK_API NtkStatus ntksDecodeLZSSInit_8u(Ntk8u* pState);

/* Decodes the source, which may hold anything: nothing outside the buffers is read or written. The
 * decoder may run ahead of the destination: after ntkStsDstFull the state holds data still to be
 * delivered, and the whole source may have been taken. If the data fit the destination exactly, the
 * status is ntkStsNoErr.
 * Also returns ntkStsBadSrcData if the stream is malformed, in this call or in an earlier one; the
 * state must then be initialised again. A truncated stream is no error: the rest may follow.
 */
NTK_API NtkStatus ntksDecodeLZSS_8u(Ntk8u** ppSrc, int* pSrcLen, Ntk8u** ppDst, int* pDstLen,
                                    Ntk8u* pState);

#ifdef __cplusplus
}
#endif

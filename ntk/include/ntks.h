/* libntks.so.12: elementary operations on vectors of bytes. */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's name, number and build day. Never null; the record is the library's. */
NTK_API const NtkLibraryVersion* ntksGetLibVersion(void);

/* Copies len bytes from pSrc to pDst; the two must not overlap. A len of 0 copies nothing.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize when len is negative. After an error the
 * destination is as it was.
 */
NTK_API NtkStatus ntksCopy_8u(const Ntk8u* pSrc, Ntk8u* pDst, int len);

/* Sets len bytes at pDst to 0. A len of 0 sets nothing. Statuses as for ntksCopy_8u. */
NTK_API NtkStatus ntksZero_8u(Ntk8u* pDst, int len);

#ifdef __cplusplus
}
#endif

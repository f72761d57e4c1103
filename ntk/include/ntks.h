/* libntks.so.12: elementary operations on vectors of bytes. */
#pragma once

#include "ntkdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's name, version and build date. Never null; the library owns the record. */
NTK_API const NtkLibraryVersion* ntksGetLibVersion(void);

/* Copies len bytes, 0 or more, from pSrc to pDst; the two must not overlap.
 * Returns ntkStsNoErr; ntkStsNullPtr; ntkStsBadSize if len is negative. After an error the
 * destination is unchanged.
 */
NTK_API NtkStatus ntksCopy_8u(const Ntk8u* pSrc, Ntk8u* pDst, int len);

/* Sets len bytes, 0 or more, at pDst to 0. Statuses as for ntksCopy_8u. */
NTK_API NtkStatus ntksZero_8u(Ntk8u* pDst, int len);

#ifdef __cplusplus
}
#endif

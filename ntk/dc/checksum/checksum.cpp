// Running checksums.
//
// Adler-32 (RFC 1950, section 8.2) is a pair of sums modulo 65521, the largest prime below 2^16:
// of the bytes, starting at 1, and of the values of the first sum after each byte.
//
// The CRCs are remainders over GF(2): the message is a polynomial whose coefficients are its bits;
// the checksum is the remainder of its product with x^32 divided by a polynomial of degree 32. The
// register starts with all bits set and is complemented at the end, so that zeroes at either end of
// the message affect the checksum. They differ in the polynomial and the bit order:
//   CRC-32       0x04c11db7, least significant first   RFC 1952 (gzip), PNG
//   CRC-32C      0x1edc6f41, least significant first   RFC 3720 (iSCSI)
//   bzip2's CRC  0x04c11db7, most significant first    one per block of the bzip2 format
//
// State: one 32-bit value per checksum, kept by the caller. It is always the finished checksum:
// complementing it twice between pieces costs nothing, it can be compared with published values at
// any point, and the initial value of a CRC is 0. Any value passed in is a valid state; Adler-32
// therefore reduces both halves first.
//
// Kernels: those of the fastest packaged library (libisal for the CRCs, libdeflate for Adler-32),
// one or two of our own for machines or enabled features that these cannot use, and a generic one.
// All kernels of a checksum agree on every input.

#include "ntkdc.h"

#include "kernels.h"

namespace ntk {

namespace {

constexpr Ntk32u withReducedHalves(Ntk32u adler32) {
    constexpr Ntk32u modulus = 65521;
    return ((adler32 >> 16) % modulus << 16) | (adler32 & 0xffff) % modulus;
}

NtkStatus checkArguments(const Ntk8u* pSrc, int srcLen, const Ntk32u* pValue) {
    if (pSrc == nullptr || pValue == nullptr) {
        return ntkStsNullPtr;
    }
    return srcLen < 0 ? ntkStsBadSize : ntkStsNoErr;
}

NtkStatus continueCrc(Choice<ChecksumFunction>& kernel, const Ntk8u* pSrc, int srcLen,
                      Ntk32u* pValue) {
    const NtkStatus status = checkArguments(pSrc, srcLen, pValue);
    if (status == ntkStsNoErr) {
        *pValue = kernel.get()(*pValue, pSrc, static_cast<std::size_t>(srcLen));
    }
    return status;
}

} // namespace

} // namespace ntk

NtkStatus ntksAdler32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pAdler32) {
    const NtkStatus status = ntk::checkArguments(pSrc, srcLen, pAdler32);
    if (status == ntkStsNoErr) {
        *pAdler32 = ntk::adler32Kernel.get()(ntk::withReducedHalves(*pAdler32), pSrc,
                                             static_cast<std::size_t>(srcLen));
    }
    return status;
}

NtkStatus ntksCRC32_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32) {
    return ntk::continueCrc(ntk::crc32Kernel, pSrc, srcLen, pCRC32);
}

NtkStatus ntksCRC32C_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32C) {
    return ntk::continueCrc(ntk::crc32cKernel, pSrc, srcLen, pCRC32C);
}

NtkStatus ntksCRC32_BZ2_8u(const Ntk8u* pSrc, int srcLen, Ntk32u* pCRC32) {
    return ntk::continueCrc(ntk::crc32Bz2Kernel, pSrc, srcLen, pCRC32);
}

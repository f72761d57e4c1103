// The kernels of the four checksums.
#pragma once

#include <cstddef>

#include "../dispatch.h"

namespace ntk {

// Continues a checksum over `length` bytes. Takes and returns the finished checksum, as the public
// call does. Both halves of the Adler-32 value passed in are reduced.
using ChecksumFunction = Ntk32u(Ntk32u value, const Ntk8u* data, std::size_t length);

extern Choice<ChecksumFunction> adler32Kernel;
extern Choice<ChecksumFunction> crc32Kernel;
extern Choice<ChecksumFunction> crc32cKernel;
extern Choice<ChecksumFunction> crc32Bz2Kernel;

// Features that libisal's own dispatch among its CRC kernels checks for.
inline constexpr Ntk64u isalOwnDispatchUses =
    NTK_CPU_SSE3 | NTK_CPU_SSSE3 | NTK_CPU_SSE41 | NTK_CPU_SSE42 | NTK_CPU_CLMUL | NTK_CPU_AVX |
    NTK_CPU_AVX2 | NTK_CPU_AVX512F | NTK_CPU_AVX512CD | NTK_CPU_AVX512BW | NTK_CPU_AVX512DQ |
    NTK_CPU_AVX512VL | NTK_CPU_AVX512_BITALG | NTK_CPU_AVX512VPOPCNTDQ;

} // namespace ntk

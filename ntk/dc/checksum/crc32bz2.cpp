// Kernels of the CRC of bzip2's blocks.

#include "crcfold.h"
#include "kernels.h"

#include <isa-l/crc.h>

namespace ntk {

namespace {

using Fold = ForwardFold<0x04c11db7>;

// libisal takes and returns the finished value.
Ntk32u runIsal(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return crc32_ieee(value, data, length);
}

constexpr Candidate<ChecksumFunction> candidates[] = {
    {"isal", NTK_CPU_SSE42 | NTK_CPU_CLMUL, isalOwnDispatchUses, runIsal},
    {"clmul", NTK_CPU_SSE41 | NTK_CPU_CLMUL, 0, crcByFolding<Fold>},
    {"generic", 0, 0, crcByTables<Fold>},
};

} // namespace

constinit Choice<ChecksumFunction> crc32Bz2Kernel(candidates);

} // namespace ntk

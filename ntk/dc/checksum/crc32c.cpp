// Kernels of the CRC-32C, the one CRC that SSE4.2 has an instruction for.

#include "crcfold.h"
#include "kernels.h"

#include <isa-l/crc.h>

namespace ntk {

namespace {

using Fold = ReflectedFold<0x1edc6f41>;

// libisal works on the raw register; it takes a pointer to non-const data but only reads them.
Ntk32u runIsal(Ntk32u value, const Ntk8u* data, std::size_t length) {
    return ~crc32_iscsi(const_cast<Ntk8u*>(data), static_cast<int>(length), ~value);
}

// One dependent instruction per 8 bytes: for machines with the CRC32 instruction but without
// carry-less multiplication.
[[gnu::target("sse4.2")]] Ntk32u runSse42(Ntk32u value, const Ntk8u* data, std::size_t length) {
    Ntk64u crc = static_cast<Ntk32u>(~value);
    for (; length >= 8; data += 8, length -= 8) {
        Ntk64u word = 0;
        std::memcpy(&word, data, 8);
        crc = _mm_crc32_u64(crc, word);
    }
    auto narrow = static_cast<Ntk32u>(crc);
    for (; length > 0; ++data, --length) {
        narrow = _mm_crc32_u8(narrow, *data);
    }
    return ~narrow;
}

constexpr Candidate<ChecksumFunction> candidates[] = {
    {"isal", NTK_CPU_SSE42 | NTK_CPU_CLMUL, isalOwnDispatchUses, runIsal},
    {"clmul", NTK_CPU_SSE41 | NTK_CPU_CLMUL, 0, crcByFolding<Fold>},
    {"sse42", NTK_CPU_SSE42, 0, runSse42},
    {"generic", 0, 0, crcByTables<Fold>},
};

} // namespace

constinit Choice<ChecksumFunction> crc32cKernel(candidates);

} // namespace ntk

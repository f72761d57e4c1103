// Checksums in pieces, from any value, against zlib and against division bit by bit.
#include <zlib.h>

#include "guarded.h"
#include "cpufeatures.h"
#include "ntkdc.h"

namespace {

Ntk32u byBits(const Bytes& bytes, Ntk32u value, Ntk32u reversedPolynomial) {
    value = ~value;
    for (const Ntk8u byte : bytes) {
        value ^= byte;
        for (int i = 0; i < 8; ++i) {
            value = value >> 1 ^ (value % 2 == 1 ? reversedPolynomial : 0);
        }
    }
    return ~value;
}

Ntk32u byBitsHighestFirst(const Bytes& bytes, Ntk32u value) {
    value = ~value;
    for (const Ntk8u byte : bytes) {
        value ^= static_cast<Ntk32u>(byte) << 24;
        for (int i = 0; i < 8; ++i) {
            value = value << 1 ^ (value >> 31 == 1 ? 0x04c11db7 : 0);
        }
    }
    return ~value;
}

Ntk32u found(NtkStatus (*checksum)(const Ntk8u*, int, Ntk32u*), const Bytes& bytes, std::size_t cut,
             Ntk32u value) {
    const auto middle = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(cut, bytes.size()));
    for (const Bytes& part : {Bytes(bytes.begin(), middle), Bytes(middle, bytes.end())}) {
        const GuardedBlock block(part);
        FUZZ_CHECK(checksum(block.data(), block.size(), &value) == ntkStsNoErr);
    }
    return value;
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    const auto value = in.number<Ntk32u>();
    const std::size_t cut = in.word();
    const Bytes bytes = in.rest();
    const auto length = static_cast<uInt>(bytes.size());
    const fuzz::Block block(bytes);
    FUZZ_CHECK(found(ntksCRC32_8u, bytes, cut, value) == crc32(value, block.data(), length));
    FUZZ_CHECK(found(ntksCRC32C_8u, bytes, cut, value) == byBits(bytes, value, 0x82f63b78));
    FUZZ_CHECK(found(ntksCRC32_BZ2_8u, bytes, cut, value) == byBitsHighestFirst(bytes, value));
    // zlib takes reduced values only.
    const Ntk32u reduced = value % 65536 % 65521 | (value / 65536 % 65521) << 16;
    FUZZ_CHECK(found(ntksAdler32_8u, bytes, cut, value) == adler32(reduced, block.data(), length));
    return 0;
}

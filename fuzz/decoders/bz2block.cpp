// The decoder of a bzip2 block against its four stages, one after the other.
#include "cpufeatures.h"
#include "ntkdc.h"
#include "oracles/bz2_dictionary.h"
#include "oracles/bz2_mtf.h"

namespace {

using Symbols = std::vector<Ntk16u>;

struct Block {
    Symbols symbols;
    int row = 0;
    int sizeDictionary = 0;
    Ntk8u inUse[256] = {};
};

struct Decoded {
    NtkStatus status = ntkStsNoErr;
    Bytes bytes;

    bool operator==(const Decoded&) const = default;
};

fuzz::Block bufferFor(std::size_t length) {
    int size = 0;
    FUZZ_CHECK(ntksBWTInvGetSize_8u(static_cast<int>(length), &size) == ntkStsNoErr);
    return fuzz::Block(static_cast<std::size_t>(size), 0xa5);
}

Decoded byStages(Block block, std::size_t capacity) {
    const auto used = std::count_if(block.inUse, block.inUse + 256, [](Ntk8u u) { return u != 0; });
    if (used != block.sizeDictionary) {
        return {ntkStsBadValue, {}};
    }
    // The first fault counts: a symbol out of range behind what does not fit is not seen.
    const auto firstBad =
        std::find_if(block.symbols.begin(), block.symbols.end(), [&](Ntk16u symbol) {
            return symbol > block.sizeDictionary || block.sizeDictionary == 0;
        });
    const auto good = static_cast<std::size_t>(firstBad - block.symbols.begin());
    const bool isSound = good == block.symbols.size();
    auto left = static_cast<int>(good);
    block.symbols.reserve(1); // no null
    Ntk16u* at = block.symbols.data();
    const fuzz::Block dst(capacity);
    int length = dst.size();
    const NtkStatus status = ntksDecodeZ1Z2_BZ2_16u8u(&at, &left, dst.data(), &length);
    if (status != ntkStsNoErr) {
        return {status == ntkStsDstFull ? ntkStsDstTooSmall : status, {}};
    }
    if (!isSound) {
        return {ntkStsBadSrcData, {}};
    }
    const fuzz::Block bytes(
        oracle::expanded(block.inUse, oracle::Mtf().inverse(dst.first(length))));
    const NtkStatus restored = ntksBWTInv_8u(bytes.data(), bytes.data(), bytes.size(), block.row,
                                             bufferFor(capacity).data());
    return {restored, restored == ntkStsNoErr ? bytes.first(length) : Bytes()};
}

Decoded decoded(const Block& block, std::size_t capacity) {
    const fuzz::Block dst(capacity);
    int length = dst.size();
    Symbols symbols = block.symbols;
    symbols.reserve(1);
    const NtkStatus status = ntksDecodeBlock_BZ2_16u8u(
        symbols.data(), static_cast<int>(symbols.size()), dst.data(), &length, block.row,
        block.sizeDictionary, block.inUse, bufferFor(capacity).data());
    FUZZ_CHECK(0 <= length && length <= dst.size());
    FUZZ_CHECK(status <= 0 && (status == ntkStsNoErr || length == dst.size()));
    return {status, status == ntkStsNoErr ? dst.first(length) : Bytes()};
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    const std::size_t capacity = in.word() / 2;
    Block block;
    block.row = static_cast<int>(in.word()) - 8;
    const int error = in.byte() < 8 ? 1 : 0;
    const unsigned used = in.below(257);
    const unsigned first = in.byte();
    for (unsigned i = 0; i < used; ++i) {
        block.inUse[(first + 3 * i) % 256] = 1;
    }
    block.sizeDictionary = static_cast<int>(used) + error;
    const unsigned range = in.flip() ? used + 1 : 300; // of the symbols
    while (!in.empty()) {
        block.symbols.push_back(static_cast<Ntk16u>((range > 256 ? in.word() : in.byte()) % range));
    }
    FUZZ_CHECK(decoded(block, capacity) == byStages(block, capacity));
    return 0;
}

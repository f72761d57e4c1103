// bzip2's coder of runs of zeroes, both ways, in destinations of any size, against a reference.
#include "fuzz.h"
#include "ntkdc.h"
#include "oracles/bz2_z1z2.h"

namespace {

using Symbols = std::vector<Ntk16u>;
constexpr std::size_t mostData = 1 << 16;

struct Decoded {
    NtkStatus status = ntkStsNoErr;
    std::size_t taken = 0;
    Bytes bytes;

    bool operator==(const Decoded&) const = default;
};

// Symbol by symbol: a run that does not fit is left with all of its digits.
Decoded expectedOf(const Symbols& symbols, std::size_t capacity) {
    Decoded result;
    std::size_t at = 0;
    while (at < symbols.size()) {
        Ntk64u run = 0;
        Ntk64u digit = 1;
        std::size_t next = at;
        for (; next < symbols.size() && symbols[next] <= 1 && run <= 0x7fffffff; ++next) {
            run += digit * (symbols[next] + 1U);
            digit *= 2;
        }
        if (run > 0x7fffffff || symbols[next == at ? at : next - 1] > 256) {
            return {ntkStsBadSrcData, 0, {}};
        }
        const bool isRun = next > at;
        if ((isRun ? run : 1) > capacity - result.bytes.size()) {
            // What makes the rest malformed may come first or later.
            result.status = ntkStsDstFull;
            return result;
        }
        result.bytes.insert(result.bytes.end(), isRun ? static_cast<std::size_t>(run) : 1,
                            isRun ? Ntk8u{0} : static_cast<Ntk8u>(symbols[at] - 1));
        at = isRun ? next : at + 1;
        result.taken = at;
    }
    return result;
}

Decoded decoded(Symbols symbols, std::size_t capacity) {
    symbols.reserve(1); // no null
    const fuzz::Block dst(capacity);
    Ntk16u* at = symbols.data();
    auto left = static_cast<int>(symbols.size());
    int length = dst.size();
    const NtkStatus status = ntksDecodeZ1Z2_BZ2_16u8u(&at, &left, dst.data(), &length);
    const auto taken = static_cast<std::size_t>(at - symbols.data());
    FUZZ_CHECK(taken + static_cast<std::size_t>(left) == symbols.size());
    if (status < 0) {
        FUZZ_CHECK(taken == 0 && length == dst.size());
        length = 0;
    }
    FUZZ_CHECK(0 <= length && length <= dst.size());
    return {status, taken, dst.first(length)};
}

// In destinations of this size, until all is encoded or a run does not fit one.
Symbols encoded(const Bytes& bytes, int capacity, int (&freqTable)[258], bool& isWhole) {
    const fuzz::Block src(bytes);
    Ntk8u* at = src.data();
    int left = src.size();
    Symbols all;
    NtkStatus status = ntkStsDstFull;
    isWhole = true;
    while (status == ntkStsDstFull && isWhole) {
        const auto dst = std::make_unique<Ntk16u[]>(static_cast<std::size_t>(capacity));
        int count = capacity;
        const int before = left;
        status = ntksEncodeZ1Z2_BZ2_8u16u(&at, &left, dst.get(), &count, freqTable);
        FUZZ_CHECK(status == ntkStsNoErr || status == ntkStsDstFull);
        FUZZ_CHECK(0 <= count && count <= capacity);
        FUZZ_CHECK(at + left == src.data() + src.size());
        FUZZ_CHECK(status != ntkStsNoErr || left == 0);
        isWhole = status == ntkStsNoErr || left < before;
        all.insert(all.end(), dst.get(), dst.get() + count);
    }
    FUZZ_CHECK(isWhole || capacity < 20); // no run has more digits
    return all;
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const std::size_t capacity = in.word() % mostData;
    const bool hasRuns = in.flip();
    const Bytes bytes = in.rest();
    Symbols symbols;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += hasRuns ? 1 : 2) {
        const unsigned symbol = bytes[i] + (hasRuns ? 0U : bytes[i + 1] % 2 * 256U);
        symbols.push_back(static_cast<Ntk16u>(symbol));
    }
    const Decoded expected = expectedOf(symbols, capacity);
    FUZZ_CHECK(decoded(symbols, capacity) == expected);

    int freqTable[258] = {};
    bool isWhole = false;
    const Symbols code = encoded(bytes, 1 + static_cast<int>(capacity % 64), freqTable, isWhole);
    const Symbols reference = oracle::z1z2Encoded(bytes);
    FUZZ_CHECK(code == Symbols(reference.begin(),
                               reference.begin() + static_cast<std::ptrdiff_t>(code.size())));
    FUZZ_CHECK(!isWhole || code == reference);
    for (int symbol = 0; symbol < 258; ++symbol) {
        FUZZ_CHECK(freqTable[symbol] == std::count(code.begin(), code.end(), symbol));
    }
    FUZZ_CHECK(!isWhole || decoded(code, bytes.size()).bytes == bytes);
    return 0;
}

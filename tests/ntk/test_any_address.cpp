// Arrays of two and four bytes an element, one byte off their alignment: the results are those of
// aligned ones, and the sanitizer of undefined behaviour has nothing to say.
#include <gtest/gtest.h>

#include <cstring>

#include "bz2huffcalls.h"
#include "deflatecalls.h"

namespace {

template <class T> class Misaligned {
public:
    // Inlined, it has gcc 12 take the size for a negative one.
    [[gnu::noinline]] explicit Misaligned(const std::vector<T>& values)
        : m_bytes(2 * alignof(T) + sizeof(T) * values.size()), m_count(values.size()) {
        const auto past = reinterpret_cast<std::uintptr_t>(m_bytes.data()) % alignof(T);
        m_at = m_bytes.data() + alignof(T) - past + 1;
        std::memcpy(m_at, values.data(), sizeof(T) * m_count);
    }
    T* data() { return reinterpret_cast<T*>(m_at); }
    std::vector<T> values() const {
        std::vector<T> values(m_count);
        std::memcpy(values.data(), m_at, sizeof(T) * m_count);
        return values;
    }

private:
    Bytes m_bytes;
    std::size_t m_count;
    Ntk8u* m_at;
};

const Bytes& text() {
    static const Bytes bytes = textBytes(20000);
    return bytes;
}

TEST(AnyAddress, OfTheTablesAndEntriesOfDeflate) {
    for (const int level : {1, 6}) {
        MatchSearch aligned;
        aligned.level = level;
        ASSERT_EQ(aligned.searchAll(text()), ntkStsNoErr);

        const auto length = static_cast<int>(text().size());
        Misaligned<Ntk32s> heads(std::vector<Ntk32s>(32768, -32768)), previous(heads.values());
        Misaligned<Ntk32u> litFreq(std::vector<Ntk32u>(286)), distFreq(std::vector<Ntk32u>(30));
        Misaligned<Ntk16u> dist(std::vector<Ntk16u>(text().size()));
        Bytes lit(text().size());
        const Ntk8u* src = text().data();
        int srcLen = length, srcIdx = 0, left = length;
        ASSERT_EQ(ntksDeflateLZ77_8u(&src, &srcLen, &srcIdx, src, 32768, heads.data(),
                                     previous.data(), 32768, litFreq.data(), distFreq.data(),
                                     lit.data(), dist.data(), &left, level, ntkDeflateFinish),
                  ntkStsNoErr);
        Entries entries{lit, dist.values()};
        entries.lit.resize(static_cast<std::size_t>(length - left));
        entries.dist.resize(static_cast<std::size_t>(length - left));
        EXPECT_EQ(entries, aligned.entries);
        EXPECT_EQ(heads.values(), aligned.heads);
        EXPECT_EQ(litFreq.values(),
                  std::vector(std::begin(aligned.litFreq), std::end(aligned.litFreq)));
        EXPECT_EQ(distFreq.values(),
                  std::vector(std::begin(aligned.distFreq), std::end(aligned.distFreq)));

        Misaligned<NtkHuffCode> litCodes(
            std::vector(std::begin(fixedCodes.lit), std::end(fixedCodes.lit)));
        Misaligned<NtkHuffCode> distCodes(
            std::vector(std::begin(fixedCodes.dist), std::end(fixedCodes.dist)));
        Bytes block(8 + 4 * lit.size());
        Ntk32u code = 3; // as blockOf: the last block, with the fixed codes
        int codeLen = 3, written = 0;
        ASSERT_EQ(ntksDeflateHuff_8u(lit.data(), dist.data(), length - left, &code, &codeLen,
                                     litCodes.data(), distCodes.data(), block.data(), &written),
                  ntkStsNoErr);
        const Bytes wanted = blockOf(aligned.entries);
        ASSERT_GE(wanted.size(), static_cast<std::size_t>(written));
        EXPECT_TRUE(std::equal(block.begin(), block.begin() + written, wanted.begin()));
    }
}

TEST(AnyAddress, OfTheSymbolsOfBz2) {
    constexpr int alphabet = 258;
    Symbols symbols(text().begin(), text().end());
    symbols.push_back(alphabet - 1);
    const auto count = static_cast<int>(symbols.size());
    Misaligned<Ntk16u> source(symbols), back(Symbols(symbols.size()));

    HuffEncoder encoder({alphabet - 1}, alphabet);
    ASSERT_EQ(
        ntksEncodeHuffInit_BZ2_16u8u(alphabet, nullptr, source.data(), count, encoder.state.data()),
        ntkStsNoErr);
    Bytes out;
    ASSERT_EQ(encoder.pack(out), ntkStsNoErr);
    const std::size_t context = out.size();
    out.resize(context + 3 * symbols.size());
    Ntk16u* from = source.data();
    int left = count, written = static_cast<int>(out.size() - context);
    ASSERT_EQ(ntksEncodeHuff_BZ2_16u8u(&encoder.bits.code, &encoder.bits.count, &from, &left,
                                       out.data() + context, &written, encoder.state.data()),
              ntkStsNoErr);
    out.resize(context + static_cast<std::size_t>(written));
    flushBits(encoder.bits, out);
    EXPECT_EQ(out, encodedBlock(symbols, alphabet));

    HuffDecoder decoder(alphabet);
    Ntk8u* src = out.data();
    auto srcLen = static_cast<int>(out.size());
    ASSERT_EQ(decoder.unpack(src, srcLen), ntkStsNoErr);
    int room = count;
    ASSERT_EQ(ntksDecodeHuff_BZ2_8u16u(&decoder.bits.code, &decoder.bits.count, &src, &srcLen,
                                       back.data(), &room, decoder.state.data()),
              ntkStsNoErr);
    EXPECT_EQ(back.values(), symbols);
}

TEST(AnyAddress, OfTheRunsOfZeroes) {
    Bytes positions = text();
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        positions[i] = 0;
    }
    Misaligned<Ntk16u> symbols(Symbols(positions.size() + 1));
    Misaligned<int> frequencies(std::vector<int>(258, 7));
    Ntk8u* src = positions.data();
    auto srcLen = static_cast<int>(positions.size());
    int count = srcLen + 1;
    ASSERT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&src, &srcLen, symbols.data(), &count, frequencies.data()),
              ntkStsNoErr);
    std::vector<int> wanted(258, 7);
    const Symbols made = symbols.values();
    for (int i = 0; i < count; i++) {
        wanted[made[static_cast<std::size_t>(i)]]++;
    }
    EXPECT_EQ(frequencies.values(), wanted);

    Bytes back(positions.size());
    Ntk16u* from = symbols.data();
    auto room = static_cast<int>(back.size());
    ASSERT_EQ(ntksDecodeZ1Z2_BZ2_16u8u(&from, &count, back.data(), &room), ntkStsNoErr);
    EXPECT_EQ(back, positions);
}

} // namespace

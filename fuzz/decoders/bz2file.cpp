// Files of the bzip2 format, made and read with the library's stages, with libbz2 as the judge. In
// an arbitrary block the checksums are made to fit, as no input would ever guess them.
#include <bzlib.h>

#include "bz2chain.h"
#include "bz2huffcalls.h"
#include "fuzz.h"

namespace {

constexpr std::size_t mostData = 1 << 18;

// False for what libbz2 rejects, or does not take whole.
bool isReadByLibbz2(const Bytes& file, Bytes& data) {
    bz_stream stream{};
    FUZZ_CHECK(BZ2_bzDecompressInit(&stream, 0, 0) == BZ_OK);
    Bytes in = file;
    data.assign(mostData, 0);
    stream.next_in = reinterpret_cast<char*>(in.data());
    stream.avail_in = static_cast<unsigned>(in.size());
    stream.next_out = reinterpret_cast<char*>(data.data());
    stream.avail_out = static_cast<unsigned>(data.size());
    const int status = BZ2_bzDecompress(&stream);
    data.resize(data.size() - stream.avail_out);
    const bool isWhole = status == BZ_STREAM_END && stream.avail_in == 0;
    BZ2_bzDecompressEnd(&stream);
    return isWhole;
}

bool isRead(const Bytes& file, Bytes& data) try {
    data = readBzip2File(file);
    return true;
} catch (const std::runtime_error&) {
    return false;
}

class BitWriter {
public:
    void put(Ntk64u value, int bits) {
        while (bits-- > 0) {
            if (m_count++ % 8 == 0) {
                m_bytes.push_back(0);
            }
            m_bytes.back() =
                static_cast<Ntk8u>(m_bytes.back() | (value >> bits & 1) << (7 - (m_count - 1) % 8));
        }
    }
    const Bytes& bytes() const { return m_bytes; }

private:
    Bytes m_bytes;
    std::size_t m_count = 0;
};

// A block as the file has it, from its tables on, and the values before them.
struct Block {
    int row;
    Ntk8u inUse[256];
    int sizeDictionary;
    Bytes bits;
};

constexpr int blockLimit = 100000;

// The symbols of the block without the last; false if its codes are malformed. bitCount: the
// block's part of its bits.
bool hasSymbols(const Block& block, Symbols& symbols, std::size_t& bitCount) {
    static HuffDecoder decoder(1);
    FUZZ_CHECK(ntksDecodeHuffInit_BZ2_8u16u(block.sizeDictionary + 2, decoder.state.data()) ==
               ntkStsNoErr);
    decoder.bits = {};
    const fuzz::Block src(block.bits);
    Ntk8u* at = src.data();
    int left = src.size();
    if (decoder.unpack(at, left) != ntkStsNoErr ||
        decoder.decode(at, left, symbols, blockLimit + 1) != ntkStsNoErr) {
        return false;
    }
    symbols.pop_back();
    symbols.reserve(1); // no null
    bitCount = static_cast<std::size_t>(8 * (src.size() - left) - decoder.bits.count);
    return true;
}

// Whether the symbols are a transform, of these bytes: what the inverse makes of others is the
// library's own affair. (The dictionary changes nothing, as its values are the lowest.)
bool isTransform(Symbols symbols, const Bytes& bytes) {
    const auto length = static_cast<int>(bytes.size());
    const fuzz::Block positions(bytes.size()), sorted(bytes.size()), back(bytes);
    const fuzz::Block mtf(blockFor(ntksMTFGetSize_8u));
    const fuzz::Block buffer(blockFor(ntksBWTFwdGetSize_8u, length));
    Ntk16u* at = symbols.data();
    auto left = static_cast<int>(symbols.size());
    int count = length;
    int row = 0;
    FUZZ_CHECK(ntksDecodeZ1Z2_BZ2_16u8u(&at, &left, positions.data(), &count) == ntkStsNoErr);
    FUZZ_CHECK(ntksMTFInit_8u(mtf.data()) == ntkStsNoErr);
    FUZZ_CHECK(ntksMTFInv_8u(positions.data(), positions.data(), length, mtf.data()) ==
               ntkStsNoErr);
    FUZZ_CHECK(ntksBWTFwd_8u(back.data(), sorted.data(), length, &row, buffer.data()) ==
               ntkStsNoErr);
    return sorted.first(length) == positions.first(length);
}

// False if the data does not fit, or the block ends before the count of a run. That the stage
// cannot know: there one more byte, 0, would be the count and add nothing.
bool isRunLengthDecoded(Bytes bytes, Bytes& data) {
    const fuzz::Block state(blockFor(ntksRLEGetSize_BZ2_8u));
    FUZZ_CHECK(ntksDecodeRLEInit_BZ2_8u(state.data()) == ntkStsNoErr);
    const fuzz::Block decoded(mostData);
    bytes.push_back(0);
    Ntk8u* from = bytes.data();
    Ntk8u* to = decoded.data();
    auto left = static_cast<int>(bytes.size()) - 1;
    int room = decoded.size();
    if (ntksDecodeRLEState_BZ2_8u(&from, &left, &to, &room, state.data()) != ntkStsNoErr) {
        return false;
    }
    data = Bytes(decoded.data(), to);
    left = 1;
    FUZZ_CHECK(ntksDecodeRLEState_BZ2_8u(&from, &left, &to, &room, state.data()) >= 0);
    return to != decoded.data() + data.size();
}

// False if the block is malformed.
bool isDecoded(const Block& block, Bytes& data, std::size_t& bitCount) {
    Symbols symbols;
    if (!hasSymbols(block, symbols, bitCount)) {
        return false;
    }
    static const fuzz::Block bytes(blockLimit), buffer(blockFor(ntksBWTInvGetSize_8u, blockLimit));
    int length = blockLimit;
    return ntksDecodeBlock_BZ2_16u8u(symbols.data(), static_cast<int>(symbols.size()), bytes.data(),
                                     &length, block.row, block.sizeDictionary, block.inUse,
                                     buffer.data()) == ntkStsNoErr &&
           isTransform(symbols, bytes.first(length)) &&
           isRunLengthDecoded(bytes.first(length), data);
}

Bytes fileOf(const Block& block, std::size_t bitCount, const Bytes& data) {
    Ntk32u crc = 0;
    FUZZ_CHECK(ntksCRC32_BZ2_8u(data.data(), static_cast<int>(data.size()), &crc) == ntkStsNoErr);
    BitWriter file;
    file.put(0x425a6831, 32); // "BZh1"
    file.put(0x314159265359, 48);
    file.put(crc, 32);
    file.put(static_cast<Ntk64u>(block.row), 25);
    file.put(0xffff, 16);
    for (const Ntk8u used : block.inUse) {
        file.put(used, 1);
    }
    for (std::size_t i = 0; i < bitCount; ++i) {
        file.put(block.bits[i / 8] >> (7 - i % 8) & 1U, 1);
    }
    file.put(0x177245385090, 48);
    file.put(crc, 32);
    return file.bytes();
}

void judgeBlock(fuzz::Input& in) {
    Block block{static_cast<int>(in.word()), {}, 1 + static_cast<int>(in.below(256)), {}};
    std::fill_n(block.inUse, block.sizeDictionary, Ntk8u{1});
    block.bits = in.rest();
    Bytes data;
    std::size_t bitCount = 0;
    if (!isDecoded(block, data, bitCount) || data.empty() || data.size() >= mostData) {
        return;
    }
    const Bytes file = fileOf(block, bitCount, data);
    Bytes expected;
    FUZZ_CHECK(isReadByLibbz2(file, expected));
    FUZZ_CHECK(data == expected);
    FUZZ_CHECK(readBzip2File(file) == data);
}

// The damage is mostly found by a checksum; libbz2 takes codes that are over-subscribed.
void judgeFile(const Bytes& file) {
    Bytes expected;
    Bytes data;
    if (isRead(file, data)) {
        FUZZ_CHECK(isReadByLibbz2(file, expected) && data == expected);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    if (in.flip()) {
        judgeBlock(in);
        return 0;
    }
    const Bytes marks = in.take(16);
    const Bytes text = in.rest();
    Bytes file = makeBzip2File(text, 1);
    Bytes expected;
    FUZZ_CHECK(isReadByLibbz2(file, expected) && expected == text);
    FUZZ_CHECK(readBzip2File(file) == text);
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(file, places);
    judgeFile(file);
    return 0;
}

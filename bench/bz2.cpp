// Decompression of one bzip2 block by the library's calls against libbz2's. Both start from the
// same file, made by libbz2; the library's side does all that is to be done: table context, Huffman
// codes, block (runs of zeroes, move-to-front, inverse Burrows-Wheeler transform), run lengths,
// checksum. Only the fixed header is read beforehand.

#include <cstring>
#include <stdexcept>

#include "bzip2.h"
#include "ntkdc.h"

namespace {

// The header of a file's first block, and where its context starts.
struct Header {
    int row = 0;
    Ntk8u inUse[256];
    int sizeDictionary = 0;
    Ntk32u code = 0; // of the byte that the header ends in, so many bits
    int bits = 0;
    std::size_t offset = 0;

    explicit Header(const Bytes& file) {
        std::size_t at = 8UL * 14; // behind the checksum
        const auto take = [&](int count) {
            int value = 0;
            for (; count > 0; count--, at++) {
                value = value << 1 | (file[at / 8] >> (7 - at % 8) & 1);
            }
            return value;
        };
        take(1);
        row = take(24);
        const int rows = take(16);
        for (int i = 0; i < 256; i++) {
            inUse[i] = (rows >> (15 - i / 16) & 1) != 0 && take(1) != 0;
            sizeDictionary += inUse[i];
        }
        bits = static_cast<int>(-at & 7);
        code = bits == 0 ? 0 : static_cast<Ntk32u>(take(bits)) << (32 - bits);
        offset = at / 8;
    }
};

// Buffers as a decoder for blocks of this size would keep them.
class Decoder {
public:
    explicit Decoder(const Bytes& file) : m_file(file), m_header(m_file) {}

    void decode(Bytes& data) {
        int symbols = longest + 1;
        int bytes = longest;
        decodeSymbols(&symbols);
        must(ntksDecodeBlock_BZ2_16u8u(m_symbols.data(), symbols - 1, m_block.data(), &bytes,
                                       m_header.row, m_header.sizeDictionary, m_header.inUse,
                                       m_bwt.data()));
        Ntk8u *src = m_block.data(), *dst = data.data();
        int room = lengthOf(data);
        must(ntksDecodeRLEInit_BZ2_8u(m_runs.data()));
        must(ntksDecodeRLEState_BZ2_8u(&src, &bytes, &dst, &room, m_runs.data()));
        m_crc = 0;
        must(ntksCRC32_BZ2_8u(data.data(), lengthOf(data) - room, &m_crc));
    }
    bool isChecksumRight() const {
        Ntk32u crc = 0;
        std::memcpy(&crc, m_file.data() + 10, sizeof crc);
        return m_crc == __builtin_bswap32(crc);
    }

private:
    void decodeSymbols(int* pLength) {
        Ntk32u code = m_header.code;
        int bits = m_header.bits;
        Ntk8u* src = m_file.data() + m_header.offset;
        int left = lengthOf(m_file) - static_cast<int>(m_header.offset);
        must(ntksDecodeHuffInit_BZ2_8u16u(m_header.sizeDictionary + 2, m_huffman.data()));
        must(ntksUnpackHuffContext_BZ2_8u16u(&code, &bits, &src, &left, m_huffman.data()));
        must(ntksDecodeHuff_BZ2_8u16u(&code, &bits, &src, &left, m_symbols.data(), pLength,
                                      m_huffman.data()));
    }

    static constexpr int longest = 200000;
    Bytes m_file;
    Header m_header;
    std::vector<Ntk16u> m_symbols = std::vector<Ntk16u>(longest + 1);
    Bytes m_block = Bytes(longest);
    Bytes m_huffman = sized(ntksDecodeHuffGetSize_BZ2_8u16u, longest);
    Bytes m_bwt = sized(ntksBWTInvGetSize_8u, longest);
    Bytes m_runs = sized(ntksRLEGetSize_BZ2_8u);
    Ntk32u m_crc = 0;
};

void compareBz2(Run& run) {
    Bytes file = bzip2Compressed(run.data);
    Decoder decoder(file);
    Bytes decoded(run.data.size());
    run.decodersSideBySide(
        "decompression of a block", decoded,
        {{"", [&] { decoder.decode(decoded); }},
         {"BZ2_bzBuffToBuffDecompress", [&] { bzip2Decompress(file, decoded); }}});
    if (!decoder.isChecksumRight()) {
        throw std::runtime_error("the library's checksum of the block is not libbz2's");
    }
}

} // namespace

const Comparison bz2Comparison = {
    "bz2",     "the decoding steps of bzip2 together with libbz2", {"book1", "pic"}, 102400, 60,
    compareBz2};

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
class Header {
public:
    explicit Header(const Bytes& file) : m_file(file), m_at(8 * 14) { // behind the checksum
        take(1);
        row = take(24);
        const int rows = take(16);
        for (int i = 0; i < 256; i++) {
            inUse[i] = (rows >> (15 - i / 16) & 1) != 0 && take(1) != 0;
            sizeDictionary += inUse[i];
        }
        bits = static_cast<int>(-m_at & 7);
        code = bits == 0 ? 0 : static_cast<Ntk32u>(take(bits)) << (32 - bits);
        offset = m_at / 8;
    }

    int row = 0;
    Ntk8u inUse[256];
    int sizeDictionary = 0;
    Ntk32u code = 0;
    int bits = 0;
    std::size_t offset = 0;

private:
    int take(int count) {
        int value = 0;
        for (; count > 0; count--, m_at++) {
            value = value << 1 | (m_file[m_at / 8] >> (7 - m_at % 8) & 1);
        }
        return value;
    }

    const Bytes& m_file;
    std::size_t m_at;
};

// Buffers as a decoder for blocks of this size would keep them.
class Decoder {
public:
    explicit Decoder(Bytes file)
        : m_file(std::move(file)), m_header(m_file), m_symbols(longest + 1), m_block(longest),
          m_huffman(sized(ntksDecodeHuffGetSize_BZ2_8u16u, longest)),
          m_bwt(sized(ntksBWTInvGetSize_8u, longest)), m_runs(sized(ntksRLEGetSize_BZ2_8u)),
          m_data(longest) {}

    void decode() {
        int symbols = longest + 1;
        int bytes = longest;
        decodeSymbols(&symbols);
        must(ntksDecodeBlock_BZ2_16u8u(m_symbols.data(), symbols - 1, m_block.data(), &bytes,
                                       m_header.row, m_header.sizeDictionary, m_header.inUse,
                                       m_bwt.data()));
        expandRuns(bytes);
    }

    void mustHaveRestored(const Bytes& data) const {
        Ntk32u crc = 0;
        std::memcpy(&crc, m_file.data() + 10, sizeof crc);
        mustEqual(Bytes(m_data.begin(), m_data.begin() + m_length), data);
        if (m_crc != __builtin_bswap32(crc)) {
            throw std::runtime_error("the library's checksum of the block is not libbz2's");
        }
    }

private:
    void decodeSymbols(int* pLength) {
        Ntk32u code = m_header.code;
        int bits = m_header.bits;
        Ntk8u* src = m_file.data() + m_header.offset;
        int left = static_cast<int>(m_file.size() - m_header.offset);
        must(ntksDecodeHuffInit_BZ2_8u16u(m_header.sizeDictionary + 2, m_huffman.data()));
        must(ntksUnpackHuffContext_BZ2_8u16u(&code, &bits, &src, &left, m_huffman.data()));
        must(ntksDecodeHuff_BZ2_8u16u(&code, &bits, &src, &left, m_symbols.data(), pLength,
                                      m_huffman.data()));
    }

    void expandRuns(int bytes) {
        Ntk8u* src = m_block.data();
        Ntk8u* dst = m_data.data();
        int room = longest;
        must(ntksDecodeRLEInit_BZ2_8u(m_runs.data()));
        must(ntksDecodeRLEState_BZ2_8u(&src, &bytes, &dst, &room, m_runs.data()));
        m_length = longest - room;
        m_crc = 0;
        must(ntksCRC32_BZ2_8u(m_data.data(), m_length, &m_crc));
    }

    static constexpr int longest = 200000;
    Bytes m_file;
    Header m_header;
    std::vector<Ntk16u> m_symbols;
    Bytes m_block, m_huffman, m_bwt, m_runs, m_data;
    int m_length = 0;
    Ntk32u m_crc = 0;
};

void compareBz2(Run& run) {
    Bytes file = bzip2Compressed(run.data);
    Decoder decoder(file);
    Bytes other(run.data.size());
    run.sideBySide("decompression of a block", run.data.size(),
                   {{"", [&] { decoder.decode(); }},
                    {"BZ2_bzBuffToBuffDecompress", [&] { bzip2Decompress(file, other); }}});
    decoder.mustHaveRestored(run.data);
}

} // namespace

const Comparison bz2Comparison = {
    "bz2",     "the decoding steps of bzip2 together with libbz2", {"book1", "pic"}, 102400, 60,
    compareBz2};

// Decompression of one bzip2 block by the library's calls against libbz2's, on the files given or
// on text made here. Both start from the same file, made by libbz2; the library's side does all
// that is to be done: table context, Huffman codes, block (runs of zeroes, move-to-front, inverse
// Burrows-Wheeler transform), run lengths, checksum. Only the fixed header is read beforehand.

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>

#include <bzlib.h>

#include "contest.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

constexpr int rounds = 60;
constexpr std::size_t dataBytes = 102400;

Bytes madeText() {
    static const char* const words[] = {"time ", "flow ", "of ", "the ",   "current ", "and, ",
                                        "a ",    "bank ", "in ", "rain\n", "slowly ",  "under "};
    std::mt19937 generator(7);
    std::string text;
    while (text.size() < dataBytes) {
        text += words[generator() % std::size(words)];
        text += static_cast<char>('a' + generator() % 26);
    }
    return Bytes(text.begin(), text.begin() + dataBytes);
}

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(file), {});
    bytes.resize(std::min(dataBytes, bytes.size()));
    return bytes;
}

char* chars(Bytes& bytes) {
    return reinterpret_cast<char*>(bytes.data());
}

Bytes compressed(Bytes data) {
    auto length = static_cast<unsigned>(data.size() + data.size() / 50 + 1000);
    Bytes file(length);
    BZ2_bzBuffToBuffCompress(chars(file), &length, chars(data), static_cast<unsigned>(data.size()),
                             9, 0, 0);
    file.resize(length);
    return file;
}

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

Bytes made(NtkStatus (*getSize)(int, int*), int length) {
    int size = 0;
    getSize(length, &size);
    return Bytes(static_cast<std::size_t>(size));
}

// Buffers as a decoder for blocks of this size would keep them.
class Decoder {
public:
    explicit Decoder(Bytes file)
        : m_file(std::move(file)), m_header(m_file), m_symbols(longest + 1), m_block(longest),
          m_huffman(made(ntksDecodeHuffGetSize_BZ2_8u16u, longest)),
          m_bwt(made(ntksBWTInvGetSize_8u, longest)), m_data(longest) {
        int size = 0;
        ntksRLEGetSize_BZ2_8u(&size);
        m_runs.resize(static_cast<std::size_t>(size));
    }

    // The first status that is not 0, if any.
    int run() {
        int symbols = longest + 1;
        int bytes = longest;
        const int status = decodeSymbols(&symbols);
        if (status != ntkStsNoErr) {
            return status;
        }
        const int blockStatus = ntksDecodeBlock_BZ2_16u8u(
            m_symbols.data(), symbols - 1, m_block.data(), &bytes, m_header.row,
            m_header.sizeDictionary, m_header.inUse, m_bwt.data());
        return blockStatus != ntkStsNoErr ? blockStatus : expandRuns(bytes);
    }

    bool gives(const Bytes& data) {
        Ntk32u crc = 0;
        std::memcpy(&crc, m_file.data() + 10, sizeof crc);
        return run() == ntkStsNoErr && m_length == static_cast<int>(data.size()) &&
               std::equal(data.begin(), data.end(), m_data.begin()) &&
               m_crc == __builtin_bswap32(crc);
    }

private:
    int decodeSymbols(int* pLength) {
        Ntk32u code = m_header.code;
        int bits = m_header.bits;
        Ntk8u* src = m_file.data() + m_header.offset;
        int left = static_cast<int>(m_file.size() - m_header.offset);
        ntksDecodeHuffInit_BZ2_8u16u(m_header.sizeDictionary + 2, m_huffman.data());
        const int status =
            ntksUnpackHuffContext_BZ2_8u16u(&code, &bits, &src, &left, m_huffman.data());
        return status != ntkStsNoErr
                   ? status
                   : ntksDecodeHuff_BZ2_8u16u(&code, &bits, &src, &left, m_symbols.data(), pLength,
                                              m_huffman.data());
    }

    int expandRuns(int bytes) {
        Ntk8u* src = m_block.data();
        Ntk8u* dst = m_data.data();
        int room = longest;
        ntksDecodeRLEInit_BZ2_8u(m_runs.data());
        const int status = ntksDecodeRLEState_BZ2_8u(&src, &bytes, &dst, &room, m_runs.data());
        m_length = longest - room;
        m_crc = 0;
        ntksCRC32_BZ2_8u(m_data.data(), m_length, &m_crc);
        return status;
    }

    static constexpr int longest = 200000;
    Bytes m_file;
    Header m_header;
    std::vector<Ntk16u> m_symbols;
    Bytes m_block;
    Bytes m_huffman, m_bwt, m_runs;
    Bytes m_data;
    int m_length = 0;
    Ntk32u m_crc = 0;
};

bool compare(const char* name, const Bytes& data) {
    Bytes file = compressed(data);
    Decoder decoder(file);
    if (data.empty() || !decoder.gives(data)) {
        std::printf("%s: cannot be read, or is not restored\n", name);
        return false;
    }
    Bytes restored(data.size());
    std::vector<Contender> contenders = {{"", [&] { decoder.run(); }},
                                         {"BZ2_bzBuffToBuffDecompress", [&] {
                                              auto length = static_cast<unsigned>(restored.size());
                                              BZ2_bzBuffToBuffDecompress(
                                                  chars(restored), &length, chars(file),
                                                  static_cast<unsigned>(file.size()), 0, 0);
                                          }}};
    compete(contenders, rounds);
    printRatio(name, data.size(), data.size(), contenders);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    printRatioTitle();
    bool ok = argc > 1 || compare("made text", madeText());
    for (int i = 1; i < argc; i++) {
        ok = compare(argv[i], readFile(argv[i])) && ok;
    }
    return ok ? 0 : 1;
}

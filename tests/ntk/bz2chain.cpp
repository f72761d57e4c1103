#include "bz2chain.h"

#include <algorithm>
#include <stdexcept>

#include "bz2huffcalls.h"

namespace {

constexpr Ntk64u blockMagic = 0x314159265359;
constexpr Ntk64u endMagic = 0x177245385090;

void check(NtkStatus status, const char* what) {
    if (status != ntkStsNoErr) {
        throw std::runtime_error(std::string(what) + " returned " + std::to_string(status));
    }
}

void require(bool isSound, const char* what) {
    if (!isSound) {
        throw std::runtime_error(what);
    }
}

int lengthOf(const auto& elements) {
    return static_cast<int>(elements.size());
}

Ntk32u checksumOf(const Ntk8u* data, std::ptrdiff_t length) {
    Ntk32u crc = 0;
    check(ntksCRC32_BZ2_8u(data, static_cast<int>(length), &crc), "CRC");
    return crc;
}

Ntk32u combined(Ntk32u all, Ntk32u block) {
    return (all << 1 | all >> 31) ^ block;
}

struct Block {
    Bytes bytes; // after the last stage applied
    Ntk8u inUse[256];
    int sizeDictionary = 0;
    int row = 0;
};

class FileMaker {
public:
    FileMaker(Bytes data, int level)
        : m_data(std::move(data)),
          m_blockLimit(100000 * level - 19), m_file{'B', 'Z', 'h',
                                                    static_cast<Ntk8u>('0' + level)} {
        m_data.reserve(1); // no null
    }

    Bytes make() {
        Ntk32u crc = 0;
        Ntk8u* at = m_data.data();
        int left = lengthOf(m_data);
        while (left > 0) {
            const Ntk8u* const start = at;
            Block block = runLengthCoded(at, left);
            const Ntk32u blockCrc = checksumOf(start, at - start);
            crc = combined(crc, blockCrc);
            putBlock(block, blockCrc);
        }
        put(endMagic, 48);
        put(crc, 32);
        flushBits(m_bits, m_file);
        return m_file;
    }

private:
    void put(Ntk64u value, int bits) {
        while (bits-- > 0) {
            m_bits.code |= static_cast<Ntk32u>(value >> bits & 1) << (31 - m_bits.count++);
            if (m_bits.count == 8) {
                m_file.push_back(static_cast<Ntk8u>(m_bits.code >> 24));
                m_bits = {};
            }
        }
    }

    Block runLengthCoded(Ntk8u*& at, int& left) const {
        constexpr int flushBytes = 5;
        Bytes state = blockFor(ntksRLEGetSize_BZ2_8u);
        check(ntksEncodeRLEInit_BZ2_8u(state.data()), "RLE init");
        Block block{Bytes(static_cast<std::size_t>(m_blockLimit)), {}};
        int length = m_blockLimit - flushBytes;
        require(ntksEncodeRLE_BZ2_8u(&at, &left, block.bytes.data(), &length, state.data()) >= 0,
                "RLE");
        int flushed = flushBytes;
        check(ntksEncodeRLEFlush_BZ2_8u(block.bytes.data() + length, &flushed, state.data()),
              "RLE flush");
        block.bytes.resize(static_cast<std::size_t>(length + flushed));
        check(ntksRLEGetInUseTable_8u(block.inUse, state.data()), "in-use table");
        return block;
    }

    static Symbols symbolsOf(Block& block) {
        Bytes& bytes = block.bytes;
        const int length = lengthOf(bytes);
        check(ntksReduceDictionary_8u_I(block.inUse, bytes.data(), length, &block.sizeDictionary),
              "reduction");
        Bytes sorted(bytes.size());
        Bytes buffer = blockFor(ntksBWTFwdGetSize_8u, length);
        check(ntksBWTFwd_8u(bytes.data(), sorted.data(), length, &block.row, buffer.data()), "BWT");
        Bytes mtf = blockFor(ntksMTFGetSize_8u);
        check(ntksMTFInit_8u(mtf.data()), "MTF init");
        check(ntksMTFFwd_8u(sorted.data(), bytes.data(), length, mtf.data()), "MTF");
        Symbols symbols(bytes.size() + 1);
        int freqTable[258] = {};
        Ntk8u* src = bytes.data();
        int left = length;
        int count = length;
        check(ntksEncodeZ1Z2_BZ2_8u16u(&src, &left, symbols.data(), &count, freqTable), "Z1Z2");
        symbols.resize(static_cast<std::size_t>(count));
        symbols.push_back(static_cast<Ntk16u>(block.sizeDictionary + 1));
        return symbols;
    }

    void putBlock(Block& block, Ntk32u crc) {
        Symbols symbols = symbolsOf(block);
        put(blockMagic, 48);
        put(crc, 32);
        put(0, 1); // not randomised
        put(static_cast<Ntk64u>(block.row), 24);
        putInUse(block.inUse);
        HuffEncoder encoder(symbols, block.sizeDictionary + 2);
        check(encoder.initStatus, "Huffman init");
        encoder.bits = m_bits;
        check(encoder.pack(m_file), "pack");
        check(encoder.encode(symbols, m_file, 3 * lengthOf(symbols) + 8), "Huffman");
        m_bits = encoder.bits;
    }

    void putInUse(const Ntk8u* inUse) {
        for (int row = 0; row < 16; ++row) {
            put(std::count(inUse + 16 * row, inUse + 16 * row + 16, 1) > 0, 1);
        }
        for (int row = 0; row < 16; ++row) {
            if (std::count(inUse + 16 * row, inUse + 16 * row + 16, 1) > 0) {
                for (int i = 0; i < 16; ++i) {
                    put(inUse[16 * row + i], 1);
                }
            }
        }
    }

    Bytes m_data;
    int m_blockLimit;
    Bytes m_file;
    PendingBits m_bits;
};

class FileReader {
public:
    explicit FileReader(Bytes file) : m_file(std::move(file)) {}

    Bytes read() {
        require(take(24) == 0x425a68, "no BZh");
        const auto level = static_cast<int>(take(8)) - '0';
        require(level >= 1 && level <= 9, "no level");
        m_blockLimit = 100000 * level;
        Bytes data;
        Ntk32u crc = 0;
        Ntk64u magic = 0;
        while ((magic = take(48)) == blockMagic) {
            const auto expected = static_cast<Ntk32u>(take(32));
            const Bytes block = runLengthDecoded(takeBlock());
            require(checksumOf(block.data(), lengthOf(block)) == expected, "block checksum");
            crc = combined(crc, expected);
            data.insert(data.end(), block.begin(), block.end());
        }
        require(magic == endMagic, "neither block nor end");
        require(take(32) == crc, "file checksum");
        require((m_at + 7) / 8 == m_file.size(), "more behind the end");
        return data;
    }

private:
    Ntk64u take(int bits) {
        require(m_at + static_cast<std::size_t>(bits) <= 8 * m_file.size(), "file too short");
        Ntk64u value = 0;
        for (; bits > 0; --bits, ++m_at) {
            value = value << 1 | (m_file[m_at / 8] >> (7 - m_at % 8) & 1);
        }
        return value;
    }

    int takeInUse(Ntk8u* inUse) {
        const Ntk64u rows = take(16);
        int used = 0;
        for (int row = 0; row < 16; ++row) {
            for (int i = 0; i < 16; ++i) {
                inUse[16 * row + i] = (rows >> (15 - row) & 1) != 0 && take(1) != 0;
                used += inUse[16 * row + i];
            }
        }
        return used;
    }

    Symbols takeSymbols(int alphabet) {
        HuffDecoder decoder(alphabet);
        const auto pendingBits = static_cast<int>(-m_at % 8);
        decoder.bits = {static_cast<Ntk32u>(take(pendingBits)), pendingBits};
        decoder.bits.code <<= (32 - pendingBits) % 32;
        Ntk8u* src = m_file.data() + m_at / 8;
        int left = lengthOf(m_file) - static_cast<int>(m_at / 8);
        check(decoder.unpack(src, left), "unpack");
        Symbols symbols;
        check(decoder.decode(src, left, symbols, m_blockLimit + 1), "Huffman decoder");
        m_at = 8 * static_cast<std::size_t>(src - m_file.data()) -
               static_cast<std::size_t>(decoder.bits.count);
        return symbols;
    }

    Bytes takeBlock() {
        require(take(1) == 0, "randomised block");
        const auto row = static_cast<int>(take(24));
        Ntk8u inUse[256];
        const int sizeDictionary = takeInUse(inUse);
        const Symbols symbols = takeSymbols(sizeDictionary + 2);
        Bytes block(static_cast<std::size_t>(m_blockLimit));
        Bytes buffer = blockFor(ntksBWTInvGetSize_8u, m_blockLimit);
        int length = m_blockLimit;
        check(ntksDecodeBlock_BZ2_16u8u(symbols.data(), lengthOf(symbols) - 1, block.data(),
                                        &length, row, sizeDictionary, inUse, buffer.data()),
              "block decoder");
        block.resize(static_cast<std::size_t>(length));
        return block;
    }

    static Bytes runLengthDecoded(Bytes block) {
        Bytes state = blockFor(ntksRLEGetSize_BZ2_8u);
        check(ntksDecodeRLEInit_BZ2_8u(state.data()), "RLE decoder init");
        Bytes data;
        Ntk8u* src = block.data();
        int left = lengthOf(block);
        NtkStatus status = ntkStsDstFull;
        while (status == ntkStsDstFull) {
            const std::size_t before = data.size();
            data.resize(before + 1000000);
            Ntk8u* dst = data.data() + before;
            int room = 1000000;
            status = ntksDecodeRLEState_BZ2_8u(&src, &left, &dst, &room, state.data());
            data.resize(data.size() - static_cast<std::size_t>(room));
        }
        check(status, "RLE decoder");
        return data;
    }

    Bytes m_file;
    std::size_t m_at = 0; // in bits
    int m_blockLimit = 0;
};

} // namespace

Bytes makeBzip2File(Bytes data, int level) {
    return FileMaker(std::move(data), level).make();
}

Bytes readBzip2File(Bytes file) {
    return FileReader(std::move(file)).read();
}

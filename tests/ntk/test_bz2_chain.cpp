// The chained stages of the library against the bzip2 program, which must decode what they encode.
// That the library decodes it too is tested stage by stage.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "bz2huffcalls.h"
#include "catalog.h"

namespace {

constexpr Ntk64u blockMagic = 0x314159265359;
constexpr Ntk64u endMagic = 0x177245385090;

int lengthOf(const auto& elements) {
    return static_cast<int>(elements.size());
}

struct Block {
    Bytes bytes; // after the last stage applied
    Ntk8u inUse[256];
    int sizeDictionary = 0;
    int row = 0;
};

// Encodes a whole file with the stages of the library; does only headers, checksums and block
// limits itself.
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
        while (left > 0 && !testing::Test::HasFailure()) {
            const Ntk8u* const start = at;
            Block block = runLengthCoded(at, left);
            Ntk32u blockCrc = 0;
            EXPECT_EQ(ntksCRC32_BZ2_8u(start, static_cast<int>(at - start), &blockCrc),
                      ntkStsNoErr);
            crc = (crc << 1 | crc >> 31) ^ blockCrc;
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
        EXPECT_EQ(ntksEncodeRLEInit_BZ2_8u(state.data()), ntkStsNoErr);
        Block block{Bytes(static_cast<std::size_t>(m_blockLimit)), {}};
        int length = m_blockLimit - flushBytes;
        EXPECT_GE(ntksEncodeRLE_BZ2_8u(&at, &left, block.bytes.data(), &length, state.data()),
                  ntkStsNoErr);
        int flushed = flushBytes;
        EXPECT_EQ(ntksEncodeRLEFlush_BZ2_8u(block.bytes.data() + length, &flushed, state.data()),
                  ntkStsNoErr);
        block.bytes.resize(static_cast<std::size_t>(length + flushed));
        EXPECT_EQ(ntksRLEGetInUseTable_8u(block.inUse, state.data()), ntkStsNoErr);
        return block;
    }

    static Symbols symbolsOf(Block& block) {
        Bytes& bytes = block.bytes;
        const int length = lengthOf(bytes);
        EXPECT_EQ(
            ntksReduceDictionary_8u_I(block.inUse, bytes.data(), length, &block.sizeDictionary),
            ntkStsNoErr);
        Bytes sorted(bytes.size());
        Bytes buffer = blockFor(ntksBWTFwdGetSize_8u, length);
        EXPECT_EQ(ntksBWTFwd_8u(bytes.data(), sorted.data(), length, &block.row, buffer.data()),
                  ntkStsNoErr);
        Bytes mtf = blockFor(ntksMTFGetSize_8u);
        EXPECT_EQ(ntksMTFInit_8u(mtf.data()), ntkStsNoErr);
        EXPECT_EQ(ntksMTFFwd_8u(sorted.data(), bytes.data(), length, mtf.data()), ntkStsNoErr);
        Symbols symbols(bytes.size() + 1);
        int freqTable[258] = {};
        Ntk8u* src = bytes.data();
        int left = length;
        int count = length;
        EXPECT_EQ(ntksEncodeZ1Z2_BZ2_8u16u(&src, &left, symbols.data(), &count, freqTable),
                  ntkStsNoErr);
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
        EXPECT_EQ(encoder.initStatus, ntkStsNoErr);
        encoder.bits = m_bits;
        EXPECT_EQ(encoder.pack(m_file), ntkStsNoErr);
        EXPECT_EQ(encoder.encode(symbols, m_file, 3 * lengthOf(symbols) + 8), ntkStsNoErr);
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

Bytes readFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file) << name << " cannot be read";
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

// The output of "bzip2 <keys>" for the input.
Bytes bzip2(const std::string& keys, const Bytes& input) {
    const std::string name = testing::TempDir() + "bz2_chain." + std::to_string(getpid());
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char*>(input.data()),
               static_cast<std::streamsize>(input.size()));
    const int status =
        std::system(("bzip2 " + keys + " <'" + name + "' >'" + name + ".out'").c_str());
    const Bytes output = readFile(name + ".out");
    unlink(name.c_str());
    unlink((name + ".out").c_str());
    EXPECT_EQ(status, 0) << "bzip2 " << keys << " failed";
    return output;
}

// The library's file must not be much longer than that of bzip2, either.
void compareWithBzip2(const std::string& name, const Bytes& data, int level) {
    const Bytes own = FileMaker(data, level).make();
    const Bytes theirs = bzip2({'-', static_cast<char>('0' + level)}, data);
    EXPECT_TRUE(bzip2("-dc", own) == data) << name << " at level " << level;
    EXPECT_LE(own.size(), theirs.size() + theirs.size() / 200) << name;
}

Bytes periodic(std::size_t size, std::size_t period) {
    Bytes bytes = randomBytes(period);
    for (std::size_t i = period; i < size; ++i) {
        bytes.push_back(bytes[i - period]);
    }
    return bytes;
}

// The stand-ins, or, with $CORPUS set, the files of that directory.
TEST(Bz2Chain, FilesOfTheCorpus) {
    const char* const directory = std::getenv("CORPUS");
    for (const corpus::FileKind& kind : corpus::catalog()) {
        const std::string name(kind.name);
        const std::string standIn = directory ? "" : kind.make();
        compareWithBzip2(name,
                         directory ? readFile(directory + ("/" + name))
                                   : Bytes(standIn.begin(), standIn.end()),
                         9);
    }
}

TEST(Bz2Chain, SpecialContents) {
    Bytes runs; // of all lengths around those where a count is written and where a run is split
    for (std::size_t length = 1; length < 600; ++length) {
        runs.insert(runs.end(), length, static_cast<Ntk8u>(length));
    }
    for (const Sample& sample : {Sample{"empty", {}},
                                 {"one byte", {'x'}},
                                 {"zero", {0}},
                                 {"all equal", Bytes(100000, 'e')},
                                 {"period 2", periodic(50000, 2)},
                                 {"period 1000", periodic(99999, 1000)},
                                 {"random", randomBytes(100000)},
                                 {"runs", runs}}) {
        compareWithBzip2(sample.name, sample.bytes, 1);
    }
}

TEST(Bz2Chain, AllLevelsAndSeveralBlocks) {
    Bytes data = textBytes(950000, 3);
    data.insert(data.begin() + 99970, 300, 'r'); // a run across the end of a block
    for (int level = 1; level <= 9; ++level) {
        const bool isWhole = level % 4 == 1;
        compareWithBzip2("blocks", isWhole ? data : Bytes(data.begin(), data.begin() + 250000),
                         level);
    }
    compareWithBzip2("equal blocks", Bytes(20000000, 'e'), 1);
}

} // namespace

// The chained stages of the library against the bzip2 program: each must decode what the other
// encodes.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "bz2chain.h"
#include "catalog.h"

namespace {

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

// In both directions. The library's file must not be much longer than that of bzip2, either.
void compareWithBzip2(const std::string& name, const Bytes& data, int level) {
    const Bytes own = makeBzip2File(data, level);
    const Bytes theirs = bzip2({'-', static_cast<char>('0' + level)}, data);
    EXPECT_TRUE(bzip2("-dc", own) == data) << name << " at level " << level;
    EXPECT_LE(own.size(), theirs.size() + theirs.size() / 200) << name;
    try {
        EXPECT_TRUE(readBzip2File(theirs) == data) << name << " at level " << level;
    } catch (const std::exception& e) {
        ADD_FAILURE() << name << " at level " << level << ": " << e.what();
    }
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

// Damage to bits that no symbol depends on may go unnoticed, but must not change the data.
TEST(Bz2Chain, ADamagedFileIsRejected) {
    const Bytes data = textBytes(3000);
    const Bytes file = makeBzip2File(data, 1);
    const auto giveOtherData = [&](const Bytes& damaged) {
        try {
            return readBzip2File(damaged) != data;
        } catch (const std::runtime_error&) {
            return false;
        }
    };
    for (std::size_t at = 0; at < file.size(); ++at) {
        Bytes damaged = file;
        damaged[at] ^= 0x10;
        EXPECT_FALSE(giveOtherData(damaged)) << at;
        damaged.resize(at);
        EXPECT_THROW(readBzip2File(damaged), std::runtime_error) << at;
    }
}

} // namespace

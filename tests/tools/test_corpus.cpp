// The corpus maker as a whole: which files, what they weigh packed, and what happens to files that
// are there already.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "../scratch.h"
#include "catalog.h"
#include "command.h"
#include "packed.h"

namespace fs = std::filesystem;

namespace {

struct Expected {
    std::string name;
    std::size_t sizeBytes;
    std::array<double, 3> realPackedBytes; // what LZ4, gzip -6, bzip2 -9 make of the real file
    std::uint64_t digest; // FNV-1a of our bytes: changes only when a maker or a recipe is changed
};

const std::vector<Expected> kExpected{
    {"bib", 111261, {56688, 35059, 27467}, 0xA0C56FF2B087D03D},
    {"book1", 768771, {522806, 313370, 232598}, 0x9DD5743848B628DA},
    {"book2", 610856, {333498, 206681, 157443}, 0x7F0F0161681E8508},
    {"geo", 102400, {98299, 68489, 56921}, 0xA038AC1582230FBF},
    {"news", 377109, {222770, 144835, 118600}, 0x7A3760A1326016BC},
    {"obj1", 21504, {12925, 10318, 10787}, 0xCBA2C64FE3CCB0C5},
    {"obj2", 246814, {117739, 81626, 76441}, 0xC09DC2D49F18F5A3},
    {"paper1", 53161, {28933, 18570, 16558}, 0x1F833C67FB04468A},
    {"paper2", 82199, {47824, 29746, 25041}, 0xE140254C5DFABB29},
    {"pic", 513216, {86885, 56438, 49759}, 0x5330BDE121800E2C},
    {"progc", 39611, {20903, 13269, 12544}, 0x5A07796A1B5249A9},
    {"progl", 71646, {26986, 16267, 15579}, 0xD0E631920DB32CD3},
    {"progp", 49379, {18717, 11240, 10710}, 0x227148CB5D89EEAF},
    {"trans", 93695, {30036, 18979, 17899}, 0x4BFA01AFE0A8D272},
};

std::uint64_t fnv1a(const std::string& bytes) {
    std::uint64_t digest = 0xCBF29CE484222325u;
    for (const char byte : bytes) {
        digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
    }
    return digest;
}

class CorpusDirectory : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments) {
        m_out.str("");
        m_err.str("");
        return corpus::runCommand(arguments, m_out, m_err);
    }

    void put(const fs::path& path, const std::string& bytes) {
        fs::create_directories(path.parent_path());
        writeFile(path, bytes);
    }

    const TemporaryDirectory m_scratch;
    const fs::path m_directory = m_scratch.path();
    std::ostringstream m_out;
    std::ostringstream m_err;
};

} // namespace

TEST(Corpus, EachFileHasNameSizeBytesAndPackedSizesOfTheTable) {
    const auto catalog = corpus::catalog();
    ASSERT_EQ(catalog.size(), kExpected.size());
    for (std::size_t i = 0; i < kExpected.size(); ++i) {
        const Expected& expected = kExpected[i];
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(catalog[i].name, expected.name);
        const std::string bytes = catalog[i].make();
        EXPECT_EQ(bytes.size(), expected.sizeBytes);
        EXPECT_EQ(fnv1a(bytes), expected.digest) << std::hex << "digest 0x" << fnv1a(bytes);
        const auto packedBytes = corpus::packedSizes(bytes);
        for (std::size_t method = 0; method < packedBytes.size(); ++method) {
            const double real = expected.realPackedBytes[method];
            EXPECT_NEAR(packedBytes[method], real, 0.1 * real) << "method " << method;
        }
    }
}

TEST_F(CorpusDirectory, MakesTheDirectoryAndLeavesNothingElseInIt) {
    const fs::path deep = m_directory / "two" / "levels";
    EXPECT_EQ(run({deep.string()}), 0) << m_err.str();
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(deep)) {
        ++entries;
    }
    EXPECT_EQ(entries, kExpected.size());
    for (const Expected& expected : kExpected) {
        EXPECT_EQ(fnv1a(readFile(deep / expected.name)), expected.digest) << expected.name;
    }
    EXPECT_NE(m_out.str().find("14 files written, 0 already there"), std::string::npos);
}

TEST_F(CorpusDirectory, KeepsEqualFilesAndNeverReplacesOthersUnasked) {
    ASSERT_EQ(run({m_directory.string()}), 0);
    const auto writtenAt = fs::last_write_time(m_directory / "book1");
    EXPECT_EQ(run({m_directory.string()}), 0);
    EXPECT_NE(m_out.str().find("0 files written, 14 already there"), std::string::npos);
    EXPECT_EQ(fs::last_write_time(m_directory / "book1"), writtenAt);

    // A real file among them, of another size or of the same one: nothing is written, not even
    // the files that are missing.
    for (const std::string& real : {std::string("real"), std::string(39611, 'r')}) {
        put(m_directory / "progc", real);
        fs::remove(m_directory / "bib");
        EXPECT_EQ(run({m_directory.string()}), 1);
        EXPECT_NE(m_err.str().find("progc"), std::string::npos);
        EXPECT_NE(m_err.str().find("--force"), std::string::npos);
        EXPECT_EQ(readFile(m_directory / "progc"), real);
        EXPECT_FALSE(fs::exists(m_directory / "bib"));
    }

    EXPECT_EQ(run({"--force", m_directory.string()}), 0);
    EXPECT_NE(m_out.str().find("2 files written, 12 already there"), std::string::npos);
    EXPECT_EQ(fs::file_size(m_directory / "progc"), 39611u);
    EXPECT_EQ(readFile(m_directory / "progc").find("rrr"), std::string::npos);
}

TEST_F(CorpusDirectory, FailuresNameTheFileAndTheReason) {
    const fs::path file = m_directory / "file";
    const fs::path taken = m_directory / "taken";
    put(file, "");
    fs::create_directories(taken / "geo");
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::vector<std::string> said;
    };
    const std::vector<Case> cases{
        {{}, 2, {"no directory given", "usage: ntkcorpus"}},
        {{""}, 2, {"unexpected argument ''", "usage"}},
        {{"--what", "x"}, 2, {"unexpected argument '--what'", "usage"}},
        {{"one", "two"}, 2, {"unexpected argument 'two'", "usage"}},
        {{file.string()}, 1, {"cannot create directory", file.string(), ": "}},
        {{(file / "below").string()}, 1, {file.string() + "/below", "Not a directory"}},
        {{"--force", taken.string()}, 1, {(taken / "geo").string(), "no file"}},
    };
    for (const Case& given : cases) {
        EXPECT_EQ(run(given.arguments), given.status);
        for (const std::string& text : given.said) {
            EXPECT_NE(m_err.str().find(text), std::string::npos) << text << " in " << m_err.str();
        }
        EXPECT_EQ(m_out.str(), "");
    }
    EXPECT_FALSE(fs::exists("one"));
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_EQ(m_out.str().rfind("usage: ntkcorpus", 0), 0u);
    for (const char* const key : {"--version", "-V"}) {
        EXPECT_EQ(run({key}), 0);
        EXPECT_EQ(m_out.str(), "ntkcorpus " NTK_VERSION "\n");
    }
}

TEST_F(CorpusDirectory, AFullDiskIsReportedAndLeavesNoHalfFile) {
    // Small contents fill only the buffer and fail when the file is closed, large ones before.
    for (const std::string name : {"obj1", "book1"}) {
        ASSERT_EQ(run({m_directory.string()}), 0);
        fs::remove(m_directory / name);
        fs::create_symlink("/dev/full", m_directory / (name + ".ntkcorpus-part"));
        EXPECT_EQ(run({m_directory.string()}), 1);
        EXPECT_EQ(m_err.str(), "ntkcorpus: cannot write " + (m_directory / name).string() +
                                   ": No space left on device\n");
        EXPECT_EQ(std::distance(fs::directory_iterator(m_directory), {}), 13);
        EXPECT_FALSE(fs::exists(m_directory / name));
    }
}

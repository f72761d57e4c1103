// The corpus maker as a whole: which files, what they weigh packed, and what happens to files that
// are there already.
#include <gtest/gtest.h>

#include <unistd.h>
#include <zlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "catalog.h"
#include "command.h"
#include "writer.h"

namespace fs = std::filesystem;

namespace {

struct Expected {
    std::string name;
    std::size_t sizeBytes;
    std::size_t realGzipBytes; // what "gzip -6" makes of the real file
    std::uint64_t digest;      // FNV-1a of our bytes: changes only when a maker is changed
};

const std::vector<Expected> kExpected{
    {"bib", 111261, 35059, 0x35B43AD796255865},    {"book1", 768771, 313370, 0x86604B4B7E457D3F},
    {"book2", 610856, 206681, 0x667C0951CBBB4186}, {"geo", 102400, 68489, 0x07EA636CACD7738E},
    {"news", 377109, 144835, 0x2E9251284AA953EC},  {"obj1", 21504, 10318, 0x72F79D9EFEF6F8C3},
    {"obj2", 246814, 81626, 0x128F9FDFB3F0A151},   {"paper1", 53161, 18570, 0xCE9F6F667BF6059E},
    {"paper2", 82199, 29746, 0xE4941A164BCF7BDC},  {"pic", 513216, 56438, 0xC866106EBD0012F4},
    {"progc", 39611, 13269, 0xC5CD8EB919027A28},   {"progl", 71646, 16267, 0xF45D41C5D48F314A},
    {"progp", 49379, 11240, 0xA99D47F1E40C173B},   {"trans", 93695, 18979, 0xD9C4A64758AA6E85},
};

std::uint64_t fnv1a(const std::string& bytes) {
    std::uint64_t digest = 0xCBF29CE484222325u;
    for (const char byte : bytes) {
        digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
    }
    return digest;
}

std::size_t gzipBytes(const std::string& bytes) {
    constexpr int kGzipWindowBits = 15 + 16;
    z_stream stream{};
    if (deflateInit2(&stream, 6, Z_DEFLATED, kGzipWindowBits, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        return 0;
    }
    std::vector<Bytef> packed(deflateBound(&stream, bytes.size()));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    const int status = deflate(&stream, Z_FINISH);
    const std::size_t packedBytes = stream.total_out;
    deflateEnd(&stream);
    return status == Z_STREAM_END ? packedBytes : 0;
}

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class CorpusDirectory : public testing::Test {
protected:
    CorpusDirectory() : m_directory(fs::temp_directory_path() / uniqueName()) {
        fs::remove_all(m_directory);
    }
    ~CorpusDirectory() override { fs::remove_all(m_directory); }

    static std::string uniqueName() {
        return std::string("ntkcorpus_") + std::to_string(getpid()) + "_" +
               testing::UnitTest::GetInstance()->current_test_info()->name();
    }

    int run(const std::vector<std::string>& arguments) {
        m_out.str("");
        m_err.str("");
        return corpus::runCommand(arguments, m_out, m_err);
    }

    void put(const fs::path& path, const std::string& bytes) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    fs::path m_directory;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

} // namespace

TEST(Corpus, EachFileHasNameSizeBytesAndPackedSizeOfTheTable) {
    const auto catalog = corpus::catalog();
    ASSERT_EQ(catalog.size(), kExpected.size());
    for (std::size_t i = 0; i < kExpected.size(); ++i) {
        const Expected& expected = kExpected[i];
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(catalog[i].name, expected.name);
        const std::string bytes = catalog[i].make(catalog[i].sizeBytes);
        EXPECT_EQ(bytes.size(), expected.sizeBytes);
        EXPECT_EQ(fnv1a(bytes), expected.digest) << std::hex << "digest 0x" << fnv1a(bytes);
        const std::size_t packedBytes = gzipBytes(bytes);
        EXPECT_GE(packedBytes * 100, expected.realGzipBytes * 85);
        EXPECT_LE(packedBytes * 100, expected.realGzipBytes * 115);
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
        EXPECT_EQ(fnv1a(contents(deep / expected.name)), expected.digest) << expected.name;
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
        EXPECT_EQ(contents(m_directory / "progc"), real);
        EXPECT_FALSE(fs::exists(m_directory / "bib"));
    }

    EXPECT_EQ(run({"--force", m_directory.string()}), 0);
    EXPECT_NE(m_out.str().find("2 files written, 12 already there"), std::string::npos);
    EXPECT_EQ(fs::file_size(m_directory / "progc"), 39611u);
    EXPECT_EQ(contents(m_directory / "progc").find("rrr"), std::string::npos);
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
}

TEST_F(CorpusDirectory, AFullDiskIsReportedAndLeavesNoHalfFile) {
    // Small contents fill only the buffer and fail when the file is closed, large ones before.
    for (const std::size_t sizeBytes : {10u, 1000000u}) {
        try {
            corpus::writeFile("/dev/full", std::string(sizeBytes, 'x'));
            FAIL() << "no error for " << sizeBytes << " bytes";
        } catch (const corpus::CorpusError& error) {
            EXPECT_STREQ(error.what(), "cannot write /dev/full: No space left on device");
        }
    }
    // The name is taken by a directory, so the complete temporary file cannot get it.
    fs::create_directories(m_directory / "name" / "below");
    EXPECT_THROW(corpus::replaceFile(m_directory / "name", "bytes"), corpus::CorpusError);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_directory), fs::directory_iterator{}), 1);
}

// Which combinations of length, file and dictionary a run measures.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "session.h"

namespace {

namespace fs = std::filesystem;
using Combination = std::tuple<std::string, std::string, std::string>; // length, file, dictionary

constexpr long shortest = 16384, longest = 262144;
const Texts fileNames = {"bib",    "book1",  "book2", "geo",   "news",  "obj1",  "obj2",
                         "paper1", "paper2", "pic",   "progc", "progl", "progp", "trans"};

// Every length reads as much of a file as there is; but a file not longer than the length before
// would give the same bytes once more and is passed over.
std::set<Combination> combinationsOfFiles(const std::string& directory, const Texts& dictionaries) {
    std::set<Combination> all;
    for (const std::string& name : fileNames) {
        const fs::path file = fs::path(directory) / name;
        const long size = fs::is_regular_file(file) ? static_cast<long>(fs::file_size(file)) : 0;
        long before = 0;
        for (long length = shortest; length <= longest; before = length, length *= 2) {
            for (const std::string& dictionary : dictionaries) {
                if (size > before) {
                    all.emplace(std::to_string(std::min(size, length)), name, dictionary);
                }
            }
        }
    }
    return all;
}

struct Measured {
    const char* function;
    Texts dictionaries;
};

void PrintTo(const Measured& measured, std::ostream* out) {
    *out << measured.function;
}

class Combinations : public SystemTest {
protected:
    void expectExactly(const std::string& function, const std::set<Combination>& expected,
                       const std::string& corpus) {
        runWell(quick + Texts{"-f=" + function, "-rtable.csv"}, {.directory = corpus});
        const Table table(text("table.csv"));
        std::set<Combination> measured;
        for (const Texts& row : table.rows) {
            EXPECT_EQ(table.cell(row, "Function"), function);
            measured.emplace(table.cell(row, "Length"), table.cell(row, "CodeFile"),
                             table.cell(row, "Variant"));
        }
        EXPECT_EQ(measured, expected);
        EXPECT_EQ(table.rows.size(), expected.size()) << "a combination stands there twice";
    }
};

TEST_F(Combinations, OfAChecksumAreItsLengths) {
    std::set<Combination> lengths;
    for (long length = shortest; length <= longest; length *= 2) {
        lengths.emplace(std::to_string(length), "-", "-");
    }
    ASSERT_EQ(lengths.size(), 5u);
    for (const char* const function :
         {"ntksAdler32_8u", "ntksCRC32_8u", "ntksCRC32C_8u", "ntksCRC32_BZ2_8u"}) {
        expectExactly(function, lengths, directory());
    }
}

class FileCombinations : public Combinations, public testing::WithParamInterface<Measured> {};

TEST_P(FileCombinations, OfTheCorpusFollowTheLengthRule) {
    const Texts& dictionaries = GetParam().dictionaries;
    const auto expected = combinationsOfFiles(corpusDirectory(), dictionaries);
    const auto count = [&expected](const std::string& file) {
        return std::count_if(expected.begin(), expected.end(),
                             [&file](const auto& c) { return std::get<1>(c) == file; });
    };
    ASSERT_EQ(count("book1"), 5 * static_cast<long>(dictionaries.size()));
    ASSERT_EQ(count("obj1"), 2 * static_cast<long>(dictionaries.size()));
    expectExactly(GetParam().function, expected, corpusDirectory());
}

TEST_P(FileCombinations, OfFilesAtTheEdgesOfALength) {
    const struct {
        const char* name;
        size_t size;
    } files[] = {{"bib", 1},         {"book1", 2},      {"book2", 10000}, {"geo", 16384},
                 {"news", 16385},    {"obj1", 0},       {"obj2", 32768},  {"paper1", 32769},
                 {"paper2", 262143}, {"progc", 262144}, {"progl", 262145}};
    for (const auto& file : files) {
        write(file.name, std::string(file.size, 'x'));
    }
    fs::create_directory(path("progp")); // "pic" and "trans" are missing
    expectExactly(GetParam().function, combinationsOfFiles(directory(), GetParam().dictionaries),
                  directory());
}

const Texts noDictionary = {"-"}, eachDictionary = {"N", "I", "E"};
INSTANTIATE_TEST_SUITE_P(Of, FileCombinations,
                         testing::Values(Measured{"ntksEncodeLZ4_8u", noDictionary},
                                         Measured{"ntksEncodeLZ4Safe_8u", noDictionary},
                                         Measured{"ntksDecodeLZ4_8u", noDictionary},
                                         Measured{"ntksEncodeLZ4Dict_8u", eachDictionary},
                                         Measured{"ntksEncodeLZ4DictSafe_8u", eachDictionary},
                                         Measured{"ntksEncodeLZ4HC_8u", eachDictionary}),
                         [](const auto& measured) { return std::string(measured.param.function); });

} // namespace

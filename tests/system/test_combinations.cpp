// Which combinations of length, file and variant a run measures, of each of the 35 tests.
#include <algorithm>
#include <filesystem>
#include <tuple>

#include "../registered_tests.h"
#include "session.h"

namespace {

namespace fs = std::filesystem;
using Combination = std::tuple<std::string, std::string, std::string>; // length, file, variant

const std::vector<RegisteredTest> tests = registeredTests();

constexpr long shortest = 16384, longest = 262144, blockLength = 102400, fieldBytes = 131072;
const Texts fileNames = {"bib",    "book1",  "book2", "geo",   "news",  "obj1",  "obj2",
                         "paper1", "paper2", "pic",   "progc", "progl", "progp", "trans"};

std::set<long> doublingLengths() {
    std::set<long> lengths;
    for (long length = shortest; length <= longest; length *= 2) {
        lengths.insert(length);
    }
    return lengths;
}

// Every length reads as much of a file as there is; but a file not longer than the length before
// would give the same bytes once more and is passed over.
std::set<long> lengthsOfFile(const fs::path& file, Data data) {
    const long size = fs::is_regular_file(file) ? static_cast<long>(fs::file_size(file)) : 0;
    std::set<long> lengths;
    for (const long length : data == Data::block ? std::set{blockLength} : doublingLengths()) {
        if (size > (length > shortest && data == Data::doubling ? length / 2 : 0)) {
            lengths.insert(std::min(size, length));
        }
    }
    return lengths;
}

// The lengths by the name of the file that they are read from.
std::map<std::string, std::set<long>> lengthsOfInputs(Data data, const std::string& directory) {
    if (data == Data::random || data == Data::field) {
        return {{"-", data == Data::field ? std::set{fieldBytes} : doublingLengths()}};
    }
    std::map<std::string, std::set<long>> lengths;
    for (const std::string& name : fileNames) {
        lengths[name] = lengthsOfFile(fs::path(directory) / name, data);
    }
    return lengths;
}

class Combinations : public SystemTest, public testing::WithParamInterface<RegisteredTest> {
protected:
    static std::set<Combination> expectedIn(const std::string& directory) {
        std::set<Combination> all;
        for (const auto& [file, lengths] : lengthsOfInputs(GetParam().data, directory)) {
            for (const long length : lengths) {
                for (const std::string& variant : GetParam().variants) {
                    all.emplace(std::to_string(length), file, variant);
                }
            }
        }
        return all;
    }
    void expectExactly(const std::set<Combination>& expected, const std::string& corpus) const {
        const std::string function = GetParam().function;
        runWell(quick + Texts{"-f=" + function, "-rtable.csv"}, {.directory = corpus});
        const Table table(text("table.csv"));
        std::set<Combination> measured;
        Texts variants; // in their order, which is that of the user's parameter
        for (const Texts& row : table.rows) {
            EXPECT_EQ(table.cell(row, "Function"), function);
            measured.emplace(table.cell(row, "Length"), table.cell(row, "CodeFile"),
                             table.cell(row, "Variant"));
            if (std::count(variants.begin(), variants.end(), table.cell(row, "Variant")) == 0) {
                variants.push_back(table.cell(row, "Variant"));
            }
        }
        EXPECT_EQ(measured, expected);
        EXPECT_EQ(variants, GetParam().variants);
        EXPECT_EQ(table.rows.size(), expected.size()) << "a combination stands there twice";
    }
};

TEST_P(Combinations, OfTheCorpus) {
    const auto expected = expectedIn(corpusDirectory());
    ASSERT_EQ(expected.size(), GetParam().combinations);
    expectExactly(expected, corpusDirectory());
}

INSTANTIATE_TEST_SUITE_P(Of, Combinations, testing::ValuesIn(tests),
                         [](const auto& test) { return std::string(test.param.function); });

class ListOfTests : public SystemTest {};

TEST_F(ListOfTests, IsThatOfTheCombinationsInItsOrder) {
    Texts names;
    for (const RegisteredTest& test : tests) {
        names.push_back(test.function);
    }
    EXPECT_EQ(listedFunctions(), names);
}

class FileCombinations : public Combinations {};

TEST_P(FileCombinations, OfFilesAtTheEdgesOfALength) {
    const std::pair<const char*, size_t> files[] = {
        {"bib", 1},         {"book1", 2},      {"book2", 10000}, {"geo", 16384},
        {"news", 16385},    {"obj1", 0},       {"obj2", 32768},  {"paper1", 32769},
        {"paper2", 102401}, {"progc", 262144}, {"progl", 262145}};
    for (const auto& [name, size] : files) {
        write(name, std::string(size, 'x'));
    }
    fs::create_directory(path("progp")); // "pic" and "trans" are missing
    expectExactly(expectedIn(directory()), directory());
}

std::vector<RegisteredTest> testsOfFiles() {
    std::vector<RegisteredTest> all;
    std::copy_if(std::begin(tests), std::end(tests), std::back_inserter(all), [](const auto& test) {
        return test.data == Data::doubling || test.data == Data::block;
    });
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, FileCombinations, testing::ValuesIn(testsOfFiles()),
                         [](const auto& test) { return std::string(test.param.function); });

} // namespace

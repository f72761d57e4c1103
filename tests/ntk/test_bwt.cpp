// The Burrows-Wheeler transform against a plain sort of all rotations, and at the limits.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <divsufsort.h>

#include "callerblocks.h"
#include "dc/bwt/keysort.h"
#include "guarded.h"
#include "ntkdc.h"
#include "oracles/bwt.h"
#include "samples.h"

namespace {

const NtkBWTSortAlgorithmHint hints[] = {ntkBWTItohTanakaLimSort, ntkBWTItohTanakaUnlimSort,
                                         ntkBWTSuffixSort, ntkBWTAutoSort};

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

oracle::Bwt forward(const Bytes& text, NtkBWTSortAlgorithmHint hint) {
    GuardedBlock work(blockFor(ntksBWTFwdGetSize_8u, static_cast<int>(text.size())));
    const GuardedBlock src(text);
    GuardedBlock dst(text.size());
    oracle::Bwt t{{}, -1};
    EXPECT_EQ(
        ntksBWTFwd_SelectSort_8u(src.data(), dst.data(), src.size(), &t.row, work.data(), hint),
        ntkStsNoErr);
    t.bytes.assign(dst.data(), dst.data() + dst.size());
    return t;
}

// By libdivsufsort, for texts that are too long for the plain sort: in the text written twice, the
// suffixes of the first half are in the order of the rotations.
oracle::Bwt sortedAsSuffixes(const Bytes& text) {
    Bytes twice = text;
    twice.insert(twice.end(), text.begin(), text.end());
    std::vector<saidx_t> suffixes(twice.size());
    EXPECT_EQ(divsufsort(twice.data(), suffixes.data(), static_cast<saidx_t>(twice.size())), 0);
    oracle::Bwt t{{}, -1};
    for (const saidx_t position : suffixes) {
        const auto start = static_cast<std::size_t>(position);
        if (start < text.size()) {
            if (t.row < 0 && std::equal(text.begin(), text.end(), twice.begin() + position)) {
                t.row = static_cast<int>(t.bytes.size());
            }
            t.bytes.push_back(twice[start + text.size() - 1]);
        }
    }
    return t;
}

// Without guards, for a large number of calls.
oracle::Bwt forwardIn(Bytes& work, const Bytes& text, NtkBWTSortAlgorithmHint hint) {
    oracle::Bwt t{Bytes(text.size()), -1};
    EXPECT_EQ(ntksBWTFwd_SelectSort_8u(text.data(), t.bytes.data(), static_cast<int>(text.size()),
                                       &t.row, work.data(), hint),
              ntkStsNoErr);
    return t;
}

Bytes inverse(const oracle::Bwt& t) {
    GuardedBlock work(blockFor(ntksBWTInvGetSize_8u, static_cast<int>(t.bytes.size())));
    const GuardedBlock src(t.bytes);
    GuardedBlock dst(t.bytes.size());
    EXPECT_EQ(ntksBWTInv_8u(src.data(), dst.data(), src.size(), t.row, work.data()), ntkStsNoErr);
    return Bytes(dst.data(), dst.data() + dst.size());
}

Bytes repeated(const Bytes& word, int times, const std::string& end = "") {
    Bytes text;
    for (int i = 0; i < times; ++i) {
        text.insert(text.end(), word.begin(), word.end());
    }
    text.insert(text.end(), end.begin(), end.end());
    return text;
}

// Each word is the two before it: as many long repeats as possible without being a power.
Bytes fibonacciWord(std::size_t least) {
    std::string shorter = "b";
    std::string text = "a";
    while (text.size() < least) {
        shorter.insert(0, text);
        text.swap(shorter);
    }
    return bytesOf(text);
}

// Random blocks out of a small set of random blocks.
Bytes repetitiveBytes(std::size_t size) {
    std::mt19937 generator(5);
    Bytes text;
    while (text.size() < size) {
        const Bytes block = randomBytes(20 + generator() % 700, generator() % 6);
        text.insert(text.end(), block.begin(), block.end());
    }
    return text;
}

Bytes spreadBytes(Bytes text, int factor) {
    for (Ntk8u& b : text) {
        b = static_cast<Ntk8u>(b * factor);
    }
    return text;
}

// The next word over the letters a, b, c .., the first varying fastest; false after the last one.
bool nextWord(Bytes& word, int letters) {
    for (Ntk8u& b : word) {
        if (++b < 'a' + letters) {
            return true;
        }
        b = 'a';
    }
    return false;
}

TEST(Bwt, TransformsThePapersExample) {
    const oracle::Bwt expected{bytesOf("caraab"), 1};
    EXPECT_EQ(forward(bytesOf("abraca"), ntkBWTAutoSort), expected);
}

TEST(Bwt, SortsAllShortWords) {
    for (const auto& [letters, longest] : {std::pair{2, 10}, {3, 7}}) {
        for (int length = 1; length <= longest; ++length) {
            Bytes text(static_cast<std::size_t>(length), 'a');
            Bytes work = blockFor(ntksBWTFwdGetSize_8u, static_cast<int>(text.size()));
            do {
                const oracle::Bwt expected = oracle::bwt(text);
                for (const NtkBWTSortAlgorithmHint hint : hints) {
                    ASSERT_EQ(forwardIn(work, text, hint), expected)
                        << hint << " " << std::string(text.begin(), text.end());
                }
                ASSERT_EQ(inverse(expected), text);
            } while (nextWord(text, letters));
        }
    }
}

TEST(Bwt, SortsDifficultAndOrdinaryTexts) {
    const Bytes twoLetters = [] {
        Bytes text = randomBytes(3000);
        std::for_each(text.begin(), text.end(), [](Ntk8u& b) { b = b < 128 ? 0 : 255; });
        return text;
    }();
    std::vector<Sample> table = {
        {"run and one", repeated({0}, 2000, "x")},
        {"run of the highest and one", repeated({255}, 2000, "x")},
        {"runs up and down",
         repeated(bytesOf("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaabbbbbbbbbc"), 40, "d")},
        {"runs of many lengths",
         [] {
             Bytes text;
             for (std::size_t run = 1; run < 70; ++run) {
                 text.insert(text.end(), run * 37 % 71, 'm');
                 text.push_back(run % 3 == 0 ? 'a' : 'z');
             }
             return text;
         }()},
        {"two letters", twoLetters},
        {"random", randomBytes(3000)},
        {"text", textBytes(3000)},
        {"fibonacci", fibonacciWord(2500)},
        {"fibonacci with 0 and 255", spreadBytes(fibonacciWord(700), 151)},
        {"power of a letter", repeated(bytesOf("a"), 500)},
        {"power", repeated(textBytes(36), 60)},
        {"power by a prime above its root", repeated(bytesOf("ab"), 1009)},
        {"power of a random word", repeated(randomBytes(200), 8)},
        {"power but for the end", repeated(textBytes(150), 20, "t")},
        {"power but for a lower end", repeated(randomBytes(150), 20, std::string(1, '\0'))},
        {"power and a half", repeated(textBytes(900), 2, std::string(450, 'q'))},
        {"repetitive", repetitiveBytes(4000)},
        {"long fibonacci", fibonacciWord(120000)},
        {"long repetitive", repetitiveBytes(200000)},
        {"long power", repeated(textBytes(1000), 100)},
    };
    const std::vector<Sample> ordinary = samples();
    table.insert(table.end(), ordinary.begin(), ordinary.end());
    for (const Sample& sample : table) {
        const bool isLong = sample.bytes.size() > 5000; // too long for the plain sort
        const oracle::Bwt expected =
            isLong ? sortedAsSuffixes(sample.bytes) : oracle::bwt(sample.bytes);
        for (const NtkBWTSortAlgorithmHint hint : hints) {
            EXPECT_TRUE(forward(sample.bytes, hint) == expected) << hint << " " << sample.name;
        }
        EXPECT_TRUE(inverse(expected) == sample.bytes) << sample.name;
    }
}

// All sizes at which the method changes, with and without room for distributing the elements.
TEST(BwtKeySort, SortsAnyKeysAndLosesNoElement) {
    using ntk::bwt::BStar;
    std::mt19937_64 random(5);
    const std::function<Ntk64u(Ntk32u)> keys[] = {
        [&](Ntk32u) { return random(); },
        [&](Ntk32u) { return random() % 7; },
        [&](Ntk32u) { return random() % 2 == 0 ? 0 : ~Ntk64u{0}; },
        [&](Ntk32u) { return random() << 40 | random() % 3; },
        [](Ntk32u) { return ~Ntk64u{0}; },
        [](Ntk32u i) { return Ntk64u{i}; },
        [](Ntk32u i) { return ~Ntk64u{i}; },
        [](Ntk32u i) { return Ntk64u{i} * 0x0101010101010101; },
        [](Ntk32u i) { return Ntk64u{1} << i % 64; },
    };
    for (std::size_t kind = 0; kind < std::size(keys); ++kind) {
        for (const Ntk32u count : {0U, 1U, 2U, 15U, 16U, 17U, 33U, 64U, 65U, 300U, 5000U}) {
            for (const std::size_t room : {std::size_t{0}, std::size_t{count}}) {
                std::vector<BStar> sorted;
                for (Ntk32u i = 0; i < count; ++i) {
                    sorted.push_back({keys[kind](i), i, count - i});
                }
                std::vector<BStar> expected = sorted;
                std::vector<BStar> scratch(room);
                ntk::bwt::sortByKey(sorted.data(), sorted.data() + count, {scratch.data(), room});
                const auto inOrder = [](const BStar& a, const BStar& b) { return a.key < b.key; };
                EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end(), inOrder))
                    << kind << " " << count << " " << room;
                const auto byIndex = [](const BStar& a, const BStar& b) {
                    return a.position < b.position;
                };
                std::sort(sorted.begin(), sorted.end(), byIndex);
                EXPECT_TRUE(std::equal(sorted.begin(), sorted.end(), expected.begin(),
                                       [](const BStar& a, const BStar& b) {
                                           return a.key == b.key && a.position == b.position &&
                                                  a.index == b.index;
                                       }))
                    << kind << " " << count << " " << room;
            }
        }
    }
}

TEST(Bwt, WritesOverItsSource) {
    const Bytes text = textBytes(5000);
    Bytes work = blockFor(ntksBWTFwdGetSize_8u, static_cast<int>(text.size()));
    Bytes bytes = text;
    int idx = -1;
    const auto length = static_cast<int>(text.size());
    ASSERT_EQ(ntksBWTFwd_8u(bytes.data(), bytes.data(), length, &idx, work.data()), ntkStsNoErr);
    EXPECT_EQ((oracle::Bwt{bytes, idx}), oracle::bwt(text));
    ASSERT_EQ(ntksBWTInv_8u(bytes.data(), bytes.data(), length, idx, work.data()), ntkStsNoErr);
    EXPECT_EQ(bytes, text);
}

TEST(BwtInverse, GivesTheRotationOfAnyRow) {
    const Bytes text = textBytes(701);
    oracle::Bwt t = oracle::bwt(text);
    const int unrotated = t.row;
    for (t.row = 0; t.row < static_cast<int>(text.size()); ++t.row) {
        const Bytes got = inverse(t);
        const Bytes twice = repeated(got, 2);
        EXPECT_EQ(got == text, t.row == unrotated);
        EXPECT_NE(std::search(twice.begin(), twice.end(), text.begin(), text.end()), twice.end());
    }
}

// Links lead to rows whatever the bytes are; the guards around the buffers check the rest.
TEST(BwtInverse, AcceptsAnyBytes) {
    for (const std::size_t size : {1, 2, 3, 7, 64, 255, 1000}) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            Bytes bytes = randomBytes(size, seed);
            if (seed % 2 == 1) { // many cycles of rows
                std::sort(bytes.begin(), bytes.end());
            }
            const auto row = static_cast<int>(size * seed / 20);
            for (const Ntk8u byte : inverse({bytes, row})) {
                EXPECT_NE(std::find(bytes.begin(), bytes.end(), byte), bytes.end());
            }
        }
    }
}

TEST(Bwt, RejectsRowsAndHintsThatThereAreNot) {
    Bytes text = bytesOf("abca");
    Bytes work = blockFor(ntksBWTFwdGetSize_8u, 4);
    Ntk8u* const p = text.data();
    for (const auto& [length, row] : {std::pair{4, 4}, {4, -1}, {0, 1}}) {
        EXPECT_EQ(ntksBWTInv_8u(p, p, length, row, work.data()), ntkStsBadValue) << row;
    }
    int idx = -7;
    const auto badHint = static_cast<NtkBWTSortAlgorithmHint>(4);
    EXPECT_EQ(ntksBWTFwd_SelectSort_8u(p, p, 4, &idx, work.data(), badHint), ntkStsBadValue);
    EXPECT_EQ(idx, -7);
    EXPECT_EQ(text, bytesOf("abca"));
}

} // namespace

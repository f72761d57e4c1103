// Each file is of the kind of its namesake: the structure that a reader of such files relies on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "catalog.h"

namespace {

std::string made(std::string_view name) {
    for (const corpus::FileKind& kind : corpus::catalog()) {
        if (kind.name == name) {
            return kind.make(kind.sizeBytes);
        }
    }
    ADD_FAILURE() << "no file " << name;
    return {};
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

std::size_t countOf(const std::string& text, std::string_view what) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += what.size()) {
        ++count;
    }
    return count;
}

// Words only: "end" does not count in "append".
std::size_t countOfWord(const std::string& text, std::string_view word) {
    const auto isLetter = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += word.size()) {
        const bool startsWord = at == 0 || !isLetter(text[at - 1]);
        const std::size_t end = at + word.size();
        count += startsWord && (end == text.size() || !isLetter(text[end])) ? 1 : 0;
    }
    return count;
}

// Pascal text without what stands in braces or quotes.
std::string withoutComments(const std::string& text) {
    std::string code;
    char until = 0;
    for (const char c : text) {
        if (until != 0) {
            until = c == until ? '\0' : until;
        } else if (c == '{' || c == '\'') {
            until = c == '{' ? '}' : c;
        } else {
            code.push_back(c);
        }
    }
    return code;
}

unsigned byteAt(const std::string& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes.at(at));
}

} // namespace

TEST(CorpusKinds, TextFilesHoldPrintableLinesOfSensibleLength) {
    struct Case {
        std::string name;
        std::size_t longestLine;
        std::size_t meanLineAtLeast, meanLineAtMost;
    };
    const std::vector<Case> cases{
        {"bib", 240, 10, 40},   {"book1", 200, 30, 55},  {"book2", 240, 30, 76},
        {"news", 200, 20, 72},  {"paper1", 240, 20, 66}, {"paper2", 240, 25, 76},
        {"progc", 200, 10, 40}, {"progl", 200, 20, 60},  {"progp", 200, 15, 45},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.name);
        const std::string text = made(given.name);
        for (const char c : text) {
            ASSERT_TRUE((c >= ' ' && c <= '~') || c == '\n' || c == '\t') << static_cast<int>(c);
        }
        EXPECT_EQ(text.back(), '\n');
        // No template left a reference behind; "$" stands only where text means it.
        EXPECT_EQ(text.find("$("), std::string::npos);
        const auto lines = linesOf(text);
        for (const std::string& line : lines) {
            EXPECT_LE(line.size(), given.longestLine) << line;
        }
        EXPECT_GE(text.size() / lines.size(), given.meanLineAtLeast);
        EXPECT_LE(text.size() / lines.size(), given.meanLineAtMost);
    }
}

TEST(CorpusKinds, BibliographyHoldsSortedRecordsWithTheirFields) {
    std::string all = made("bib");
    std::string previous;
    int records = 0;
    for (std::size_t at = 0, end; (end = all.find("\n\n", at)) != std::string::npos; at = end + 2) {
        const std::string record = all.substr(at, end - at) + "\n";
        EXPECT_EQ(record.rfind("%A ", 0), 0u) << record;
        EXPECT_EQ(countOf(record, "%D 19"), 1u) << record;
        EXPECT_EQ(countOf(record, "\n%T "), 1u) << record;
        EXPECT_LE(previous, record);
        previous = record;
        ++records;
    }
    EXPECT_GT(records, 500);
}

TEST(CorpusKinds, NewsArticlesHaveTheLengthsThatTheirHeadersState) {
    const std::string all = made("news");
    const std::string mark = "#! rnews ";
    int articles = 0;
    for (std::size_t at = 0; at < all.size();) {
        ASSERT_EQ(all.compare(at, mark.size(), mark), 0) << at;
        const std::size_t start = all.find('\n', at) + 1;
        const std::size_t length = std::stoul(all.substr(at + mark.size()));
        if (start + length > all.size()) {
            break; // the last article is cut
        }
        const std::string article = all.substr(start, length);
        const std::size_t body = article.find("\n\n") + 2;
        const std::size_t lines = article.find("\nLines: ");
        ASSERT_LT(lines, body);
        EXPECT_EQ(std::stoul(article.substr(lines + 8)), countOf(article.substr(body), "\n"));
        EXPECT_EQ(article.rfind("Path: ", 0), 0u);
        at = start + length;
        ++articles;
    }
    EXPECT_GT(articles, 100);
}

TEST(CorpusKinds, SurveySamplesAreNormalisedNumbersThatVarySlowly) {
    const std::string bytes = made("geo");
    double steps = 0;
    double sizes = 0;
    double last = 0;
    // The samples of the first record behind its header of 240 bytes.
    for (std::size_t at = 240; at < 6000; at += 4) {
        const unsigned exponent = byteAt(bytes, at) & 0x7F;
        const unsigned fraction = byteAt(bytes, at + 1) << 16 | byteAt(bytes, at + 2) << 8;
        EXPECT_EQ(byteAt(bytes, at + 3), 0u);
        EXPECT_TRUE(fraction == 0 || fraction >= 0x100000u) << at;
        double value = fraction / 16777216.0;
        for (unsigned e = 64; e < exponent; ++e) {
            value *= 16;
        }
        value = (byteAt(bytes, at) & 0x80) != 0 ? -value : value;
        steps += std::abs(value - last);
        sizes += std::abs(value);
        last = value;
    }
    EXPECT_GT(sizes / 1440, 10); // not all zero
    EXPECT_LT(steps, sizes);     // noise would step by more than its own size
}

TEST(CorpusKinds, FaxPageHasMarginsAndRowsLikeTheirNeighbours) {
    constexpr std::size_t kRowBytes = 216;
    const std::string bytes = made("pic");
    ASSERT_EQ(bytes.size() % kRowBytes, 0u);
    std::size_t ink = 0;
    std::size_t changes = 0;
    for (std::size_t at = kRowBytes; at < bytes.size(); ++at) {
        ink += static_cast<std::size_t>(__builtin_popcount(byteAt(bytes, at)));
        changes += static_cast<std::size_t>(
            __builtin_popcount(byteAt(bytes, at) ^ byteAt(bytes, at - kRowBytes)));
    }
    EXPECT_GT(ink * 100, bytes.size() * 8 * 3); // percent of the page
    EXPECT_LT(ink * 100, bytes.size() * 8 * 15);
    EXPECT_LT(changes, ink); // with a wrong row length about twice the ink would change
    const std::string firstRows = bytes.substr(0, 100 * kRowBytes);
    EXPECT_GT(std::count(firstRows.begin(), firstRows.end(), '\0'), 100 * 216 - 50);
}

TEST(CorpusKinds, ObjectFilesHoldCodeThatHangsTogether) {
    const std::string small = made("obj1");
    // Calls: opcode FB, argument count, mode EF and the distance to a place in the file.
    int calls = 0;
    int callsIntoTheFile = 0;
    for (std::size_t at = 1024; at + 7 < small.size() * 6 / 10; ++at) {
        const bool isCall = byteAt(small, at) == 0xFB && byteAt(small, at + 1) < 32 &&
                            byteAt(small, at + 2) == 0xEF;
        const std::uint32_t distance = byteAt(small, at + 3) | byteAt(small, at + 4) << 8 |
                                       byteAt(small, at + 5) << 16 | byteAt(small, at + 6) << 24;
        const bool isInside = static_cast<std::uint32_t>(at) + 7 + distance < small.size();
        calls += isCall ? 1 : 0;
        callsIntoTheFile += isCall && isInside ? 1 : 0;
    }
    EXPECT_GT(calls, 100);
    EXPECT_GE(callsIntoTheFile * 100, calls * 95);
    const std::string large = made("obj2");
    const std::size_t entries = countOf(large, "\x4E\x56");
    const std::size_t exits = countOf(large, "\x4E\x5E\x20\x5F");
    EXPECT_GT(exits, 300u);
    EXPECT_LT(entries > exits ? entries - exits : exits - entries, 20u);
}

TEST(CorpusKinds, ProgramsAreBalanced) {
    const std::string c = made("progc");
    const std::string wholeC = c.substr(0, c.rfind("\n}\n") + 3);
    EXPECT_EQ(countOf(wholeC, "{"), countOf(wholeC, "}"));
    EXPECT_GT(countOf(wholeC, "\n{\n"), 50u);
    EXPECT_EQ(countOf(wholeC, "/*"), countOf(wholeC, "*/"));

    const std::string lisp = made("progl");
    const std::string wholeLisp = lisp.substr(0, lisp.rfind("\n\n"));
    EXPECT_EQ(countOf(wholeLisp, "("), countOf(wholeLisp, ")"));
    EXPECT_GT(countOf(wholeLisp, "\n(defun "), 60u);

    const std::string pascal = withoutComments(made("progp"));
    EXPECT_EQ(countOfWord(pascal, "begin") + countOfWord(pascal, "case") +
                  countOfWord(pascal, "record"),
              countOfWord(pascal, "end"));
    EXPECT_EQ(countOfWord(pascal, "repeat"), countOfWord(pascal, "until"));
    EXPECT_EQ(pascal.substr(pascal.size() - 5), "end.\n");
}

TEST(CorpusKinds, SessionUsesWellFormedEscapeSequences) {
    const std::string text = made("trans");
    int sequences = 0;
    for (std::size_t at = 0; (at = text.find('\033', at)) != std::string::npos; ++at) {
        ASSERT_EQ(text.at(at + 1), '[');
        const std::size_t end = text.find_first_not_of("0123456789;", at + 2);
        if (end == std::string::npos || end + 1 == text.size()) {
            break; // cut off by the end of the file
        }
        EXPECT_NE(std::string("HKm@L").find(text[end]), std::string::npos) << text[end];
        ++sequences;
    }
    EXPECT_GT(sequences, 500);
    EXPECT_GT(countOf(text, "\r\nQUAY% "), 50u);
}

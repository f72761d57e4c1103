#include "psstring.h"

#include <gtest/gtest.h>

#include <locale.h>

#include <cstdint>
#include <string>

#include "psexcept.h"

namespace {

std::string str(const psString& s) {
    return std::string(s.c_str(), static_cast<size_t>(s.length()));
}

TEST(String, CapacityGrowsInStepsOf16) {
    const int cases[][2] = {{0, 16}, {1, 16}, {15, 16}, {16, 32}, {31, 32}, {32, 48}, {1000, 1008}};
    for (const auto& [length, capacity] : cases) {
        psString grown, allocated;
        for (int i = 0; i < length; ++i) {
            grown += 'x';
        }
        allocated.allocate(length);
        EXPECT_EQ(grown.length(), length);
        EXPECT_EQ(allocated.capacity(), capacity) << length;
        EXPECT_EQ(length == 0 ? 16 : grown.capacity(), capacity) << length;
        EXPECT_EQ(std::string(grown.c_str()), std::string(static_cast<size_t>(length), 'x'));
    }
}

TEST(String, AllocateZeroesAndRejectsImpossibleSizes) {
    psString s("0123456789");
    s.allocate(12);
    EXPECT_EQ(str(s), std::string(12, '\0'));
    s.allocate(-3);
    EXPECT_EQ(s.length(), 0);
    s = "text";
    s.growBy(2);
    EXPECT_EQ(str(s), std::string("text\0\0", 6));
    s.growBy(INT32_MAX - 2);
    EXPECT_EQ(s.length(), 0);
    EXPECT_STREQ(s.c_str(), "");
    s.allocate(INT32_MAX);
    EXPECT_EQ(s.capacity(), 0);
}

TEST(String, AssignmentsCopyDeepAndMoveTheBuffer) {
    psString a("a rather long text, beyond one step"), b(a);
    b.at(0) = 'A';
    EXPECT_EQ(a[0], 'a');
    const char* buffer = b.c_str();
    psString c(std::move(b));
    EXPECT_EQ(c.c_str(), buffer);
    EXPECT_EQ(b.capacity(), 0); // NOLINT(bugprone-use-after-move): what is left is tested
    a = std::move(c);
    EXPECT_EQ(a.c_str(), buffer);
    EXPECT_STREQ(c.c_str(), ""); // NOLINT(bugprone-use-after-move)
    psString& self = a;
    a = self;
    a = std::move(self);
    EXPECT_EQ(a.c_str(), buffer);
    a = static_cast<const char*>(nullptr);
    EXPECT_TRUE(a.empty());
    a.assign('q');
    EXPECT_STREQ(a.c_str(), "q");
    a.assign("tail of itself").assign(a.c_str() + 8);
    EXPECT_STREQ(a.c_str(), "itself");
}

TEST(String, AppendsOfItsOwnTextSurviveTheNewBuffer) {
    psString s("0123456789");
    s += s;
    s += s.c_str() + 15;
    EXPECT_EQ(str(s), "0123456789012345678956789");
    EXPECT_EQ(str("<" + s.substr(0, 2) + ">"), "<01>");
}

TEST(String, Parts) {
    const psString s("abcdef");
    EXPECT_EQ(str(s.substr(2)), "cdef");
    EXPECT_EQ(str(s.substr(2, 3)), "cde");
    EXPECT_EQ(str(s.substr(4, 9)), "ef");
    EXPECT_EQ(str(s.substr(9, 1)), "");
    EXPECT_EQ(str(s.substr(-2, 2)), "ab");
    psString sized(s);
    sized.resize(8, '.');
    EXPECT_EQ(str(sized), "abcdef..");
    sized.resize(20, '-');
    EXPECT_EQ(str(sized), "abcdef..------------");
    sized.resize(2);
    EXPECT_EQ(str(sized), "ab");
}

TEST(String, Searches) {
    const struct {
        const char* text;
        const char* word;
        int first, last;
    } cases[] = {
        {"abcabc", "bc", 1, 4}, {"abcabc", "x", -1, -1}, {"ab", "abc", -1, -1},
        {"aaa", "aa", 0, 1},    {"abc", "", 0, 3},       {"", "", 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psString(c.text).find(c.word), c.first) << c.text << " " << c.word;
        EXPECT_EQ(psString(c.text).rfind(c.word), c.last) << c.text << " " << c.word;
    }
    EXPECT_EQ(psString("abcabc").find("bc", 2), 4);
    EXPECT_EQ(psString("abc").find("c", 1000), psString::npos);
    EXPECT_EQ(psString("ab\0cd", 5).find("cd"), psString::npos) << "ends at the zero byte";
    EXPECT_TRUE(psString("-- x").startsWith("--"));
    EXPECT_FALSE(psString("-").startsWith("--"));
}

TEST(String, Compare) {
    const struct {
        const char* a;
        const char* b;
        int order;
    } cases[] = {
        {"abc", "abcd", -1},  {"abd", "abc", 1}, {"abc", "abd", -1}, {"abc", "abc", 0},
        {"abcdef", "abc", 3}, {"", "ab", -2},    {"\xe4", "a", -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psString(c.a).compare(c.b), c.order) << c.a << " " << c.b;
    }
    EXPECT_TRUE(psString("ab\0x", 4) == psString("ab\0y", 4)) << "texts end at the zero byte";
    EXPECT_FALSE(psString("ab") == "abc");
    EXPECT_TRUE(psString() == "");
}

TEST(String, TrimKeepsLineFeedsInFrontAndCarriageReturnsBehind) {
    const char* const cases[][2] = {
        {" \t\rab\t ", "ab"}, {"\r\n ab \r", "\n ab \r"}, {" \r\t", ""}, {"ab", "ab"}, {"", ""},
    };
    for (const auto& [text, trimmed] : cases) {
        EXPECT_EQ(str(psString(text).trimmed()), trimmed) << text;
    }
    EXPECT_EQ(str(psString("MiXed_1").toLower()), "mixed_1");
}

TEST(String, PathParts) {
    const struct {
        const char *path, *dir, *name, *title;
    } cases[] = {
        {"a/b\\c.txt", "a/b\\", "c.txt", "c"},
        {"a\\b/c.tar.gz", "a\\b/", "c.tar.gz", "c.tar"},
        {"plain", "", "plain", "plain"},
        {"dir.d/file", "dir.d/", "file", "file"},
        {"dir/", "dir/", "", ""},
    };
    for (const auto& c : cases) {
        const psString path(c.path);
        EXPECT_EQ(str(path.getFileDir()), c.dir);
        EXPECT_EQ(str(path.getFileName()), c.name);
        EXPECT_EQ(str(path.getFileTitle()), c.title);
    }
}

TEST(Convert, WritersAppendTheTextOfTheType) {
    psString s("=");
    s << 42 << ' ' << -7LL << ' ' << 1234567.0 << ' ' << 0.5f << ' ' << true << ' ' << false;
    EXPECT_EQ(str(s), "=42 -7 1.23e+06 0.5 yes no");
    EXPECT_EQ(str(psText(0xffffffffffffffffULL)), "-1") << "through the signed format";
    EXPECT_EQ(str(psText(static_cast<const void*>(nullptr))), "NULL");
    EXPECT_EQ(str(psText(reinterpret_cast<const void*>(0xab12ULL))), "AB12");
    EXPECT_EQ(psFormat("%s|%d", std::string(5000, 'x').c_str(), 3).length(), 5002);
}

// Reads text into a variable that holds 77 and shows what became of it: "77" unchanged, "!" bad.
template <class T> std::string read(const char* text) {
    T value = static_cast<T>(77);
    const psString s(text);
    s.setBad(true);
    value << s;
    return str(psText(value)) + (s.isBad() ? "!" : "");
}

TEST(Convert, ReadersOfNumbers) {
    const struct {
        const char *text, *asInt, *asInt64, *asUnsigned64, *asDouble;
    } cases[] = {
        {"", "77", "77", "77", "77"},
        {"  ", "77", "77", "77", "77"},
        {"x1", "77!", "77!", "77!", "77!"},
        {"0x1F", "31", "31", "31", "31"},
        {"0X1f", "31", "31", "31", "31"},
        {" 12 words", "12", "12", "12", "12"},
        {"-9", "-9", "-9", "-9", "-9"},
        {"4294967297", nullptr, "4294967297", "4294967297", "4.29e+09"},
        {"2.5e3", "2", "2", "2", "2.5e+03"},
    };
    for (const auto& c : cases) {
        if (c.asInt) {
            EXPECT_EQ(read<int>(c.text), c.asInt) << c.text;
        }
        EXPECT_EQ(read<long long>(c.text), c.asInt64) << c.text;
        EXPECT_EQ(read<unsigned long long>(c.text), c.asUnsigned64) << c.text;
        EXPECT_EQ(read<double>(c.text), c.asDouble) << c.text;
        EXPECT_EQ(read<float>(c.text), c.asDouble) << c.text;
    }
    void* address = nullptr;
    address << psString("0xAB12");
    EXPECT_EQ(str(psText(address)), "AB12");
}

// In a thread that chose a locale, as after setlocale(), which chooses for those that did not.
TEST(Convert, TheThreadKeepsItsLocale) {
    const locale_t other = newlocale(LC_ALL_MASK, "C.utf8", nullptr);
    const locale_t before = uselocale(other);
    double number = 0;
    number << psText(0.25);
    EXPECT_EQ(uselocale(before), other);
    EXPECT_EQ(number, 0.25);
    freelocale(other);
}

TEST(Convert, ReadersOfBool) {
    const char* const cases[][2] = {
        {"Yes", "yes"}, {"true", "yes"},  {"1", "yes"},  {" T ", "yes"},
        {"No", "no"},   {"false", "no"},  {"0", "no"},   {"", "no!"},
        {" ", "no!"},   {"maybe", "no!"}, {"10", "no!"}, {"00", "no!"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(read<bool>(text), expected) << text;
    }
}

TEST(Convert, AssignmentClearsTheFlag) {
    psString s("x");
    s.setBad(true);
    EXPECT_FALSE(psString(s).isBad());
    s = "y";
    EXPECT_FALSE(s.isBad());
}

const int levelValues[] = {1, 2, 4, 6};
const psString levelNames[] = {"ERR", "WARN", "PERF", "PERFALL"};

TEST(Keyword, FitIsACaseInsensitivePrefix) {
    const struct {
        const char *text, *name;
        int skip;
        bool fits;
    } cases[] = {
        {"err", "ERR", 0, true},
        {"E", "ERR", 0, true},
        {"ERR", "ERR", 0, true},
        {"errs", "ERR", 0, false},
        {"", "ERR", 0, true},
        {"enc", "ntksEncodeLZ4_8u", 4, true},
        {"NTKSenc", "ntksEncodeLZ4_8u", 4, true},
        {"enc", "ntksEncodeLZ4_8u", 0, false},
        {"x", "abc", 4, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fitString(c.text, c.name, c.skip), c.fits) << c.text << " " << c.name;
    }
}

TEST(Keyword, EnumTexts) {
    EXPECT_EQ(str(enumString(2, levelValues, levelNames, 4)), "WARN");
    EXPECT_EQ(str(enumString(3, levelValues, levelNames, 4)), "3");
    EXPECT_EQ(str(enumString(1, levelValues, levelNames, 0)), "1");
    const psString shared("perf"), unknown("zzz");
    shared.setBad(true);
    EXPECT_EQ(enumValue(shared, levelValues, levelNames, 4), 4) << "the first in table order";
    EXPECT_FALSE(shared.isBad());
    EXPECT_EQ(enumValue(unknown, levelValues, levelNames, 4), 0);
    EXPECT_TRUE(unknown.isBad());
}

TEST(Keyword, FlagTexts) {
    const int flags[] = {1, 4};
    const psString names[] = {"A", "B"};
    EXPECT_EQ(str(flagString(0, flags, names, 2)), "0");
    EXPECT_EQ(str(flagString(5, flags, names, 2)), "A|B");
    EXPECT_EQ(str(flagString(2, flags, names, 2)), "2");
    const struct {
        const char* text;
        int value;
        bool bad;
    } cases[] = {
        {"", 0, false}, {"a|b", 5, false}, {"b,;a a", 5, false}, {"a x b", 5, true}, {"x", 0, true},
    };
    for (const auto& c : cases) {
        const psString text(c.text);
        text.setBad(!c.bad);
        EXPECT_EQ(flagValue(text, flags, names, 2), c.value) << c.text;
        EXPECT_EQ(text.isBad(), c.bad) << c.text;
    }
}

TEST(Exception, MessagesAreCutNotLost) {
    const std::string longText(400, 'e');
    const psException harness{psString(longText.c_str())}, signal{longText.c_str()};
    EXPECT_EQ(harness.msg(), "--NTK. Exception: " + longText.substr(0, 255));
    EXPECT_EQ(harness.info(), longText.substr(0, 255));
    EXPECT_EQ(signal.msg(), "--NTK. Signal: " + longText.substr(0, 255));
    EXPECT_STREQ(signal.info(), "");
}

} // namespace

#include "pscacheiterator.h"

#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "captured.h"
#include "fake_cache.h"
#include "psalloc.h"
#include "pscachescale.h"
#include "psstepiterator.h"

TEST(CacheScale, BoundsOfTheModes) {
    const struct {
        int cache;
        double factor;
        int inLow, inHigh, outLow;
    } cases[] = {
        {0, 0.1, 0, 0, 0},
        {1000, 0.1, 100, 900, 1050},
        {1000, 0.01, 10, 900, 1050},
        {1999, 0.1, 199, 1799, 2098}, // cut off
        {INT_MAX, 0.1, 214748364, 1932735282, INT_MAX},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psInCacheBounds(c.cache, c.factor).low, c.inLow) << c.cache;
        EXPECT_EQ(psInCacheBounds(c.cache, c.factor).high, c.inHigh) << c.cache;
        EXPECT_EQ(psOutOfCacheBounds(c.cache).low, c.outLow) << c.cache;
        EXPECT_EQ(psOutOfCacheBounds(c.cache).high, INT_MAX);
    }
    EXPECT_EQ(psClampedBytes(INT_MAX + 1LL), INT_MAX);
}

TEST(CacheScale, LengthsAreScaled) {
    const struct {
        int value, current, target;
        bool fine;
        int scaled; // 0: rejected
    } cases[] = {
        {10, 100, 1000, true, 20},       {10, 1000, 100, true, 5},
        {10, 100, 100, true, 5},         {64, 100, 101, false, 128},
        {64, 100, 199, false, 128},      {64, 100, 200, false, 256},
        {64, 200, 101, false, 32},       {64, 200, 100, false, 16},
        {64, 100, 100, false, 32},       {1, 1000, 300, false, 0},
        {1, 1000, 300, true, 0},         {1, 1, INT_MAX, false, 0},
        {1 << 30, 1, 2, true, 0},        {1 << 29, 1, 2, true, 1 << 30},
        {5, 1, (1 << 30) - 1, false, 0}, // an overflow that would look positive
        {3, 0, 100, false, 0},           {3, 100, 0, false, 0},
        {0, 1, 100, false, 0},
    };
    for (const auto& c : cases) {
        int value = c.value;
        const bool done = psCacheIteratorInt::updateValue(value, c.current, c.target, c.fine);
        EXPECT_EQ(done, c.scaled != 0) << c.value;
        EXPECT_EQ(value, done ? c.scaled : c.value) << c.value << " " << c.current;
    }
}

TEST(CacheScale, AreasAreScaled) {
    const struct {
        NtkiSize size;
        int current, target;
        bool fine;
        NtkiSize scaled; // width 0: rejected
    } cases[] = {
        {{10, 20}, 1, 2, true, {20, 20}},         {{20, 10}, 1, 2, true, {20, 20}},
        {{10, 10}, 1, 2, true, {20, 10}},         {{10, 20}, 2, 1, true, {10, 10}},
        {{20, 10}, 2, 1, true, {10, 10}},         {{10, 10}, 2, 1, true, {5, 10}},
        {{10, 30}, 1, 8, false, {80, 60}},        {{64, 10}, 100, 20, false, {8, 10}},
        {{1, 1}, 100, 10, false, {0, 0}},         {{1, 1 << 30}, 1, 4, false, {8, 1 << 30}},
        {{1 << 30, 1 << 30}, 1, 2, true, {0, 0}}, {{5, 5}, 0, 9, false, {0, 0}},
    };
    for (const auto& c : cases) {
        NtkiSize size = c.size;
        const bool done = psCacheIteratorSize::updateValue(size, c.current, c.target, c.fine);
        EXPECT_EQ(done, c.scaled.width != 0) << psText(c.size).c_str();
        EXPECT_STREQ(psText(size).c_str(), psText(done ? c.scaled : c.size).c_str())
            << psText(c.size).c_str() << c.target;
    }
}

TEST(CacheScale, SizesAreTexts) {
    const struct {
        const char* text;
        bool bad;
        const char* read;
    } cases[] = {{"640x480", false, "640x480"}, {" 1x2", false, "1x2"}, {"", false, "7x7"},
                 {"640", true, "7x7"},          {"1x2x3", true, "7x7"}, {"axb", true, "7x7"}};
    for (const auto& c : cases) {
        NtkiSize size = {7, 7};
        const psString text = c.text;
        size << text;
        EXPECT_EQ(text.isBad(), c.bad) << c.text;
        EXPECT_STREQ(psText(size).c_str(), c.read) << c.text;
    }
    psIterator<NtkiSize> sizes({1, 1}, "Size");
    sizes.translate("2x3; 4x5");
    EXPECT_STREQ(sizes.defaultString().c_str(), "2x3; 4x5");
}

namespace {

struct SizedObject : psObject {
    int objectSize() const override { return bytes; }
    int bytes = 0;
};

class CacheIterator : public testing::Test {
protected:
    ~CacheIterator() override { psFreeAll(); }
    // All memory of the test from now on.
    static void hold(int bytes) {
        psFreeAll();
        if (bytes > 0) {
            psMalloc(bytes);
        }
    }
    // An iterator that stands on the mode; objectBytes 0: without an object.
    psCacheIteratorInt& begin(int mode, int objectBytes, psCacheIterator::Setter setter) {
        m_object.bytes = objectBytes;
        m_length = std::make_unique<psIterator<int>>(7, "Len");
        m_cache = std::make_unique<psCacheIteratorInt>(*m_length, objectBytes ? &m_object : nullptr,
                                                       setter);
        m_cache->firstValue();
        if (mode == psCacheIterator::PS_OUT_OF_CACHE) {
            m_cache->nextValue();
        }
        return *m_cache;
    }

private:
    const FakeCache m_cacheSize;
    SizedObject m_object;
    std::unique_ptr<psIterator<int>> m_length;
    std::unique_ptr<psCacheIteratorInt> m_cache;
};

} // namespace

TEST_F(CacheIterator, StandsForItsParameterInTexts) {
    psStepIterator<int> length;
    length.init(16, 64, 2, PS_STEP_MUL, "Len");
    psCacheIteratorInt cache(length);
    EXPECT_EQ(cache.wrapped(), &length);
    EXPECT_STREQ(cache.name().c_str(), "cacheIterator");
    EXPECT_STREQ(cache.defaultString().c_str(), "16; 64; *2");
    EXPECT_STREQ(cache.description().c_str(), length.description().c_str());
    EXPECT_STREQ(cache.prompt().c_str(), "for Len");
    cache.translate("16; 512; *2");
    EXPECT_EQ(length.last(), 512);
}

TEST_F(CacheIterator, StepsThroughTheModes) {
    psIterator<int> length(7, "Len");
    psCacheIteratorInt cache(length);
    const char* const modes[] = {"inCache", "outofCache"};
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(cache.firstValue());
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(cache.value(), i);
            EXPECT_STREQ(cache.getComment().c_str(), modes[i]);
            EXPECT_EQ(length.value(), 7); // whatever it was scaled to before
            length.setValue(99);
            EXPECT_EQ(cache.nextValue(), i == 0);
        }
    }
    psIterator<int> empty;
    psCacheIteratorInt none(empty);
    EXPECT_FALSE(none.firstValue());
}

TEST_F(CacheIterator, ValidatesTheAllocatedSizes) {
    const struct {
        int cache, mode, object, total;
        std::string report; // empty: valid
    } cases[] = {
        {10000, 0, 0, 1000, ""},
        {10000, 0, 0, 9000, ""},
        {10000, 0, 0, 999, "inCache try: cacheParm=7 totalSize=999 < 1000\n"},
        {10000, 0, 0, 9001, "inCache try: cacheParm=7 totalSize=9001 > 9000\n"},
        {10000, 0, 1000, 5000, ""},
        {10000, 0, 999, 9001,
         "inCache try: cacheParm=7 objectSize=999 < 1000\n"
         "      inCache try: cacheParm=7 totalSize=9001 > 9000\n"},
        {10000, 1, 0, 10500, ""},
        {10000, 1, 0, 10499, "outofCache try: cacheParm=7 totalSize=10499 < 10500\n"},
        {-10000, 1, 0, 0, ""}, // the query fails
        {-10000, 0, 0, 0, ""},
        {-10000, 0, 0, 1, "inCache try: cacheParm=7 totalSize=1 > 0\n"},
    };
    for (const auto& c : cases) {
        FakeCache::bytes = c.cache;
        psCacheIteratorInt& cache = begin(c.mode, c.object, nullptr);
        hold(c.total);
        const Captured output;
        EXPECT_EQ(cache.validateSize(), c.report.empty()) << c.object << " " << c.total;
        const std::string said = c.report.empty() ? "" : "      " + c.report;
        cache.outputInfo(); // has been read
        EXPECT_EQ(output.text(), said);
        g_ostrm.setOutLevel(PS_OUT_WARN);
        cache.outputInfo(); // has not
        EXPECT_EQ(output.text(), said + said);
    }
}

namespace {
std::string g_asked; // of the test's own setter
bool recordAsked(psParameter* parm, int current, int target, bool fine) {
    g_asked += psFormat("%s %d>%d%s; ", parm->name().c_str(), current, target, fine ? " fine" : "")
                   .c_str();
    return true;
}
} // namespace

TEST_F(CacheIterator, RepeatsUntilItGivesUp) {
    const Captured output;
    const struct {
        int mode, object, total;
        const char* asked;
        int repeats; // until it gives up
    } cases[] = {
        {0, 0, 9500, "Len 9500>9000; Len 9500>9000 fine; Len 9500>9000 fine; ", 10},
        // Too small again and again: down to a hundredth of the cache, then no more.
        {0, 0, 50, "Len 50>1000; Len 50>1000 fine; ", 2},
        {0, 0, 500, "Len 500>1000; Len 500>1000 fine; ", 2}, // and there it is valid
        {1, 0, 50, "Len 50>10500; Len 50>10500 fine; ", 2},
        // Too small and too large: the total shrinks, once with the lower limit.
        {0, 50, 9500, "Len 9500>9000; ", 1},
        {0, 500, 9500, "Len 9500>9000; Len 9500>9000 fine; Len 9500>9000 fine; ", 10},
    };
    for (const auto& c : cases) {
        psCacheIteratorInt& cache = begin(c.mode, c.object, recordAsked);
        hold(c.total);
        g_asked = "";
        int repeats = 0;
        while (!cache.validateSize() && cache.repeatValue()) {
            ++repeats;
        }
        EXPECT_EQ(repeats, c.repeats) << c.total;
        EXPECT_EQ(g_asked.substr(0, std::string(c.asked).length()), c.asked) << c.total;
    }
    psCacheIterator bare(*begin(0, 0, nullptr).wrapped(), nullptr, nullptr);
    EXPECT_FALSE(bare.setNewValueToParm(1, 2, false)); // knows no parameter's type
}

TEST_F(CacheIterator, OnlyWhatStaysTooSmallLowersTheLimit) {
    const Captured output;
    psCacheIteratorInt& cache = begin(0, 0, recordAsked);
    for (const int total : {9500, 9500, 500, 9500, 500}) {
        hold(total);
        EXPECT_FALSE(cache.validateSize());
        EXPECT_TRUE(cache.repeatValue());
        EXPECT_EQ(cache.lowSize(), 1000);
    }
    EXPECT_TRUE(cache.validateSize());
    EXPECT_EQ(cache.lowSize(), 100);
}

// A new mode, and a size that fits, begin with a coarse step and without old tries.
TEST_F(CacheIterator, BeginsAnew) {
    const Captured output;
    psCacheIteratorInt& cache = begin(0, 0, recordAsked);
    hold(50);
    while (!cache.validateSize() && cache.repeatValue()) {
    }
    EXPECT_EQ(cache.lowSize(), 100);
    cache.firstValue();
    EXPECT_EQ(cache.lowSize(), 1000);
    for (const int total : {9500, 9500, 5000, 9500}) {
        g_asked = "";
        hold(total);
        EXPECT_EQ(cache.validateSize() || !cache.repeatValue(), total == 5000);
    }
    EXPECT_EQ(g_asked, "Len 9500>9000; ");
    std::string said = output.text();
    g_ostrm.setOutLevel(PS_OUT_WARN);
    cache.outputInfo();
    said += "      inCache try: cacheParm=7 totalSize=9500 > 9000\n"; // of the last try alone
    EXPECT_EQ(output.text(), said);
    cache.firstValue();
    cache.outputInfo();
    EXPECT_EQ(output.text(), said);
}

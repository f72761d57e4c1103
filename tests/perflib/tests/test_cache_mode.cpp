#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "captured.h"
#include "fake_cache.h"
#include "plain_test.h"
#include "psalloc.h"
#include "psiterator.h"

namespace {

// A copy of Len elements of 2 bytes.
class CopyTest : public PlainTest {
public:
    explicit CopyTest(psIterator<int>& length)
        : PlainTest("copy"), m_length(length), m_hint(0, "Hint") {
        m_hint.translate("1;2");
    }
    bool canStart() override {
        regCacheParm(m_length);
        regCacheParm(m_hint); // only the first one is scaled
        return true;
    }
    bool initData() override {
        m_data = m_length.value() > mostElements ? nullptr : allocate(2 * m_length.value(), 0);
        return m_data || !refuses;
    }
    void flushData() override { deallocate(m_data); }
    psResult runTiming() override {
        measured += psText(m_length.value()).c_str() + std::string(" ") +
                    getCacheComment("/").c_str() + m_hint.valueString().c_str() + "; ";
        return PS_OK;
    }
    std::string measured;
    int mostElements = INT_MAX;
    bool refuses = false; // more elements than that, where otherwise there is just no memory

private:
    psIterator<int>& m_length;
    psIterator<int> m_hint;
    void* m_data = nullptr;
};

} // namespace

TEST(CacheMode, ATestMeasuresInBothModes) {
    const FakeCache cacheSize;
    const Captured output;
    const struct {
        const char* lengths;
        bool cacheMode, setAndUse;
        int mostElements;
        const char* measured;
        psResult result;
        bool refuses = false;
    } cases[] = {
        {"600;10", true, false, INT_MAX,
         "600 inCache/1; 600 inCache/2; 9600 outofCache/1; 9600 outofCache/2; ", PS_OK},
        {"600", true, true, INT_MAX, // copies of the data do not count
         "600 inCache/1; 600 inCache/2; 9600 outofCache/1; 9600 outofCache/2; ", PS_OK},
        {"100000", true, false, INT_MAX,
         "3125 inCache/1; 3125 inCache/2; 100000 outofCache/1; 100000 outofCache/2; ", PS_OK},
        {"600;10", false, false, INT_MAX, "600 1; 600 2; 10 1; 10 2; ", PS_OK},
        {"600", true, false, 5000, "600 inCache/1; 600 inCache/2; ", PS_DATA_FAIL},
        {"600", true, false, 5000, "600 inCache/1; 600 inCache/2; ", PS_OK, true}, // passed over
    };
    for (const auto& c : cases) {
        psTest::m_cache = c.cacheMode;
        g_tool.harnessCalls = c.setAndUse;
        psIterator<int> length(1, "Len");
        length.translate(c.lengths);
        CopyTest test(length);
        test.mostElements = c.mostElements;
        test.refuses = c.refuses;
        EXPECT_EQ(test.run(), c.result) << c.lengths;
        EXPECT_EQ(test.measured, c.measured) << c.lengths;
    }
    psTest::m_cache = false;
    g_tool.harnessCalls = false;
    EXPECT_TRUE(has(output.text(), "-- Fail to allocate outofCache data\n"));
}

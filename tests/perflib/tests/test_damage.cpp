// Tests whose calls write beyond a block: in which part it is found, and what becomes of the test.
#include <gtest/gtest.h>

#include <cstring>

#include "captured.h"
#include "plain_test.h"
#include "psalloc.h"

namespace {

enum class Part { none, preparation, calls, release, callsThatThrow };

class StrayTest : public PlainTest {
public:
    explicit StrayTest(Part part) : PlainTest("ntksStray"), m_part(part) {}

    bool initData() override {
        m_block = static_cast<char*>(allocate(100, 0));
        strayIn(Part::preparation);
        return true;
    }
    psResult runTiming() override {
        strayIn(Part::calls);
        strayIn(Part::callsThatThrow);
        return PlainTest::runTiming();
    }
    void flushData() override {
        strayIn(Part::release);
        deallocate(m_block);
        m_block = nullptr;
    }

private:
    void strayIn(Part part) {
        if (part == m_part && m_block) {
            memset(m_block + 100, 0, 1000);
        }
    }

    Part m_part;
    char* m_block = nullptr;
};

TEST(StrayWrites, FailTheirTestAlone) {
    const struct {
        Part part;
        psResult outcome, result;
        int runs;
        std::string said;
    } cases[] = {
        {Part::preparation, PS_OK, PS_FUNC_FAIL, 0, "the preparation of ntksStray"},
        {Part::calls, PS_OK, PS_FUNC_FAIL, 1, "the calls of ntksStray"},
        {Part::release, PS_OK, PS_FUNC_FAIL, 1, "the release of ntksStray"},
        {Part::callsThatThrow, PS_EXCEPTION, PS_EXCEPTION, 1, "the calls of ntksStray"},
    };
    for (const auto& c : cases) {
        const Captured captured;
        StrayTest test(c.part);
        test.giving(c.outcome);
        EXPECT_EQ(test.run(), c.result) << c.said;
        EXPECT_EQ(test.runs, c.runs) << c.said;
        EXPECT_TRUE(has(captured.text(),
                        "-- Memory fault: " + c.said +
                            " wrote outside of block 0 (100 bytes): 1000 bytes over its end; "
                            "with NTKPERF_GUARD=pages-after the call that does it faults\n"));
        StrayTest innocent(Part::none);
        EXPECT_EQ(innocent.run(), PS_OK) << "after " << c.said;
        EXPECT_TRUE(hasOnce(captured.text(), "Memory fault")) << "after " << c.said;
    }
}

} // namespace

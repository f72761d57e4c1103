#include "psbatches.h"

#include <gtest/gtest.h>

TEST(Batches, SpreadIsTheMiddleOverTheSmallest) {
    const struct {
        std::initializer_list<int> clocks;
        double spread;
    } cases[] = {
        {{}, 0},        {{100}, 0},        {{100, 100, 100}, 0}, {{150, 100, 400}, 0.5},
        {{0, 7, 9}, 0}, {{110, 100}, 0.1}, {{5, 4, 3, 2, 1}, 2},
    };
    for (const auto& c : cases) {
        psBatches batches;
        for (const int clocks : c.clocks) {
            batches.add(clocks);
        }
        EXPECT_DOUBLE_EQ(batches.spread(), c.spread) << c.clocks.size();
        EXPECT_EQ(batches.count(), static_cast<long long>(c.clocks.size()));
    }
}

// Of very many spans an evenly spaced part is kept: the first half is as long as 100 each, the
// second 300, so that the middle one tells whether both count.
TEST(Batches, OfManyAnEvenPartIsKept) {
    for (const int count : {1024, 1025, 5000, 100001}) {
        psBatches batches;
        for (int i = 0; i < count; ++i) {
            batches.add(i < count / 100 * 48 ? 100 : 300);
        }
        EXPECT_EQ(batches.count(), count);
        EXPECT_EQ(batches.sum(), 300LL * count - 200LL * (count / 100 * 48)); // dropped ones too
        EXPECT_DOUBLE_EQ(batches.spread(), 2) << count;
        batches.clear();
        EXPECT_EQ(batches.count(), 0);
        EXPECT_EQ(batches.sum(), 0);
        EXPECT_EQ(batches.spread(), 0);
    }
}

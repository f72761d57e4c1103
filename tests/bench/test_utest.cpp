// The U test. The expected values are those of R 4.2.2:
//   wilcox.test(a, b)                            without equal values: exact
//   wilcox.test(a, b, exact=FALSE)               with equal values: the normal approximation
#include <gtest/gtest.h>

#include <vector>

#include "utest.h"

namespace {

using Sample = std::vector<double>;

TEST(UTest, GivesThePValuesOfR) {
    struct Case {
        Sample a, b;
        double pValue;
    };
    const Case cases[] = {
        {{1, 2, 3, 4, 5, 6, 7, 8, 9}, {10, 11, 12, 13, 14, 15, 16, 17, 18}, 4.1135335253e-05},
        {{1.1, 2.3, 2.9, 4.2, 5.8, 6.1, 7.7, 8.4, 9.5},
         {2.2, 3.4, 4.4, 5.5, 6.6, 9.9, 10.1, 11.2, 12.3},
         0.258083093377},
        {{0.8, 0.83, 1.89, 1.04, 1.45, 1.38, 1.91, 1.64, 0.73, 1.46},
         {1.15, 0.88, 0.9, 0.74, 1.21},
         0.254412254412},
        {{5.5}, {1, 2, 3, 4}, 0.4},
        {{3.1, 4.1, 5.9}, {2.6, 5.3, 5.8, 9.7}, 0.857142857143},
        {{1, 2, 2, 3, 3, 3, 4, 5, 6}, {2, 3, 4, 4, 5, 6, 7, 7, 8}, 0.054932611817},
        {{10, 10, 10, 11, 11, 12}, {11, 12, 12, 13, 13}, 0.0304237841485},
        {{1, 1, 2}, {1, 2, 2}, 0.619256754177},

    };
    for (const Case& c : cases) {
        EXPECT_NEAR(uTestPValue(c.a, c.b), c.pValue, 1e-9);
        EXPECT_NEAR(uTestPValue(c.b, c.a), c.pValue, 1e-9);
    }
}

TEST(UTest, SamplesThatTellNothingHaveAPValueOfOne) {
    EXPECT_EQ(uTestPValue(Sample{}, Sample{1, 2}), 1);
    EXPECT_EQ(uTestPValue(Sample{1, 2}, Sample{}), 1);
    EXPECT_EQ(uTestPValue(Sample{3, 3, 3}, Sample{3, 3}), 1);
    EXPECT_EQ(uTestPValue(Sample{1}, Sample{2}), 1);
}

} // namespace

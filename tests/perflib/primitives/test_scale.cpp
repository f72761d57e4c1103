#include "kxdefault.h"

#include <gtest/gtest.h>

#include <string>

#include "pstest.h"

namespace {

std::string steps(kxScaleIterator& scale) {
    std::string text = std::string(scale.name().c_str()) + ":";
    for (bool more = scale.firstValue(); more; more = scale.nextValue()) {
        text += std::string(" ") + scale.valueString().c_str();
    }
    return text;
}

TEST(ScaleFactor, IteratesOnlyWhereTheFunctionScales) {
    const struct {
        const char *function, *defaultSteps, *givenSteps;
    } cases[] = {
        {"ntksAdd_16s_Sfs", "ScaleFactor: 0 1 2 -1", "ScaleFactor: 4 -4"},
        {"ntksAdd_16s_FixI", "ScaleFactor: 0 1 2 -1", "ScaleFactor: 4 -4"},
        {"ntksAdd_16s_I", ": 0", ": 0"},
        {"ntksSfsFix_16s", ": 0", ": 0"},
    };
    kxScaleIterator scale; // one object for all: a new function begins a new definition
    for (const auto& c : cases) {
        scale.init(c.function);
        EXPECT_EQ(steps(scale), c.defaultSteps) << c.function;
        scale.init(c.function, 4, -4);
        EXPECT_EQ(steps(scale), c.givenSteps) << c.function;
        EXPECT_EQ(scale.isScaled(), scale.name() == "ScaleFactor");
    }
    scale.init("f_8u_Sfs", 1, 2, 3, 4, 5, 6);
    EXPECT_EQ(steps(scale), "ScaleFactor: 1 2 3 4 5 6");
}

TEST(ScaleFactor, StandsInTheLastParameterColumn) {
    const int before = psTest::m_numParmsColm;
    psTest::m_numParmsColm = 5;
    EXPECT_EQ(kxScaleIterator().colmIndex(), 4);
    psTest::m_numParmsColm = before;
}

} // namespace

// The base of the tests of library primitives.

#include <gtest/gtest.h>

#include "captured.h"
#include "kxtest.h"
#include "psalloc.h"
#include "psbase.h"

namespace {
struct Primitive : kxTest {
    explicit Primitive(const psString& macro = "KX_REG")
        : kxTest(nullptr, nullptr, nullptr, nullptr, "ntksProbe_8u", "p.cpp", "Probe//" + macro) {}
};
} // namespace

TEST(KxTest, StatusesBecomeResults) {
    setNtkEnvironment();
    const auto text = [](int status) { return std::string(ntk_GetStatusString(status)) + "\n"; };
    const struct {
        int status;
        const char* name;
        bool errorsOnly;
        int outLevel;
        int result, raised;
        std::string said;
    } cases[] = {
        {0, "f", false, PS_OUT_PERF, 1, 0, ""},
        {-8, "f", false, PS_OUT_PERF, 9, 9, "--NTK FAIL. status = -8 in f: " + text(-8)},
        {-8, "", true, PS_OUT_ERR, 9, 9, "--NTK FAIL. status = -8: " + text(-8)},
        {3, "f", false, PS_OUT_WARN, 5, 5, "--NTK NOTE. status = 3 in f: " + text(3)},
        {3, "f", false, PS_OUT_ERR, 5, 1, ""},
        {3, "f", true, PS_OUT_PERF, 1, 0, ""},
    };
    for (const auto& c : cases) {
        psTest::m_currentResult = PS_UNDEFINED;
        kxTest::m_checkErrorsOnly = c.errorsOnly;
        const Captured log(c.outLevel);
        EXPECT_EQ(kxTest::checkStatus(c.status, c.name), c.result) << c.status;
        EXPECT_EQ(psTest::m_currentResult, c.raised) << c.status << " " << c.outLevel;
        EXPECT_EQ(log.text(), c.said);
    }
    kxTest::m_checkErrorsOnly = true;
    kxVector::m_seed = 1;
    Primitive().run();
    EXPECT_FALSE(kxTest::m_checkErrorsOnly);
    EXPECT_EQ(kxVector::m_seed, 7u);
}

TEST(KxTest, DumpsShowBuffersAndVectorsWhenAskedFor) {
    psMalloc(1);
    psMalloc(1, 0, 0, MEM_OBJECT_IS_SUBOBJECT);
    *static_cast<char*>(psMalloc(1, 0, 0, MEM_OBJECT_IS_BUFFER)) = 5;
    kxVector vector(kx8u);
    vector.createVector(1);
    Primitive test;
    const Captured log(PS_OUT_DATA & ~PS_DATA);
    test.printAllMemoryBlocks("here");
    EXPECT_EQ(log.text(), "");
    g_ostrm.setOutLevel(PS_OUT_DATA);
    test.printAllMemoryBlocks("here");
    EXPECT_EQ(log.text(),
              "======== OBJECTS OUTPUT START === here === OBJECTS OUTPUT START ========\n"
              "======== Object 2: MemoryBlock size=1\n 05\n\n"
              "======== Object 3: Vector 8u len=1\n   0\n\n"
              "======== OBJECTS OUTPUT END === here === OBJECTS OUTPUT END ========\n");
    psFreeAll();
}

TEST(KxTest, OnlyTheHarnessesOwnMacrosAreNamed) {
    EXPECT_FALSE(Primitive("KX_REG").regInfo().contains("KX_REG"));
    EXPECT_TRUE(Primitive("PS_REG").regInfo().contains(" by PS_REG macro"));
}

TEST(KxTest, TheFirstSizeIsScaledInCacheMode) {
    psIterator<NtkiSize> sizes({1, 1}, "Size");
    kxVector image(kx8u);
    for (const bool cache : {false, true}) {
        Primitive test;
        psTest::m_cache = cache;
        test.regCacheParm(sizes, image);
        test.regCacheParm(sizes);
        psTest::m_cache = false;
        const auto* first = dynamic_cast<psCacheIteratorSize*>(test.parms().front());
        EXPECT_EQ(first != nullptr, cache);
        EXPECT_EQ(test.parms().back(), &sizes);
    }
}

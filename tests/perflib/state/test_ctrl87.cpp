#include "psctrl87.h"

#include "fpu_words.h"

namespace {

// Raise flags with every exception masked.
void divideByZero87() {
    asm volatile("fld1\n\tfldz\n\tfdivrp\n\tfstp %%st(0)" ::: "st", "st(1)");
}
void roundInexactly87() {
    asm volatile("fldpi\n\tfsin\n\tfstp %%st(0)" ::: "st", "st(1)");
}

double divideSSX(double a, double b) {
    asm volatile("divsd %1, %0" : "+x"(a) : "x"(b));
    return a;
}

} // namespace

TEST(FpuText, StatusWords) {
    const tsSSXBase ssx(true);
    const std::pair<unsigned, const char*> cases[] = {
        {0x00, "Ok"},           {0x01, "?Invalid "},           {0x02, "?Denormal "},
        {0x04, "?Zerodivide "}, {0x08, "?Overflow "},          {0x10, "?Underflow "},
        {0x20, "_Inexact "},    {0x28, "?Overflow _Inexact "}, {0xFFC0, "Ok"}};
    for (const auto& [word, text] : cases) {
        EXPECT_STREQ(ts87Base::strSW(word).c_str(), text);
        EXPECT_STREQ(ssx.strExceptionState(word).c_str(), text);
    }
}

TEST(FpuText, ControlWords) {
    const std::pair<unsigned, const char*> cases87[] = {
        {0x23B, "Near 53 Invalid Denormal Overflow Underflow Inexact "},
        {0x000, "Near 24 "},
        {0x100, "Near "},
        {0x77F, "Down 64 Invalid Denormal Zerodivide Overflow Underflow Inexact "},
        {0xA04, "Up 53 Zerodivide "},
        {0xE20, "Zero 53 Inexact "}};
    for (const auto& [word, text] : cases87)
        EXPECT_STREQ(ts87Base::strCW(word).c_str(), text) << std::hex << word;

    const std::pair<unsigned, const char*> casesSSX[] = {
        {0x9F80, "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero "},
        {0x003F, "Near NoFlushToZero "},
        {0x2200, "Down Zerodivide NoFlushToZero "},
        {0xC800, "Up Underflow FlushToZero "},
        {0x7000, "Zero Inexact NoFlushToZero "}};
    const tsSSXBase ssx(true);
    for (const auto& [word, text] : casesSSX)
        EXPECT_STREQ(ssx.strCW(word).c_str(), text) << std::hex << word;
}

TEST_F(FpuWords, DefaultsReachTheHardware) {
    ntkFpuSsx4TS(ntkFpuSetControl, 0xC3F, 0xF3F);
    const ts87Base base;
    EXPECT_EQ(base.getCW() & 0xF3F, 0x23Bu);
    for (const unsigned denormalsAreZero : {0x0040u, 0u}) {
        ntkFpuSsx4TS(ntkSsxSet, 0x6000 | denormalsAreZero | 0x3F, 0xFFFF);
        const tsSSXBase ssx(true);
        EXPECT_EQ(ssx.get(), 0x9F80u | denormalsAreZero) << "the entry's choice stays";
    }
}

TEST_F(FpuWords, MasksChangeAlone) {
    const ts87Base base;
    const tsSSXBase ssx(true);
    ASSERT_EQ(base.getCW() & 0xF3F, 0x23Bu);
    base.disableExceptions();
    EXPECT_EQ(base.getCW() & 0xF3F, 0x23Fu);
    divideByZero87();
    EXPECT_EQ(base.getSW() & 0x3F, 0x04u);
    base.disableInexactException(); // masks what is up, and inexact
    EXPECT_EQ(base.getCW() & 0x3F, 0x24u);
    EXPECT_EQ(base.getSW() & 0x3F, 0u);
    base.enableExceptions();
    EXPECT_EQ(base.getCW() & 0xF3F, 0x200u);
    base.setDefault();

    ssx.set(0x0280, 0x1F80);
    divideSSX(1, 0);
    EXPECT_EQ(ssx.get() & 0x3F, 0x04u);
    ssx.disableInexactException(); // the others as they were
    EXPECT_EQ(ssx.get() & 0xFFBF, 0x9280u);
    ssx.enableExceptions();
    EXPECT_EQ(ssx.get() & 0xFFBF, 0x8000u);
    ssx.destroy();
    EXPECT_EQ(ssx.get() & 0xFFBF, 0x9F80u);
}

TEST_F(FpuWords, NothingHappensWithoutTheExtension) {
    ntkFpuSsx4TS(ntkSsxSet, 0x3F85, 0xFFFF);
    const tsSSXBase none(false);
    none.setDefault();
    none.clear();
    none.enableExceptions();
    none.disableInexactException();
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxGet, 0, 0) & 0xFFBF, 0x3F85u);
    EXPECT_EQ(none.get(), 0u);
    EXPECT_STREQ(none.strExceptionState(0x3F).c_str(), "cpu has not SSX extension");
    EXPECT_STREQ(none.strCW(0x9F80).c_str(), "cpu has not SSX extension");
    EXPECT_TRUE(psSSX::instance().hasExtension()) << "every x86-64 processor has it";
}

TEST_F(FpuWords, WatchersCollectTheUnionOfTheRuns) {
    ps87& watch87 = ps87::instance();
    psSSX& watchSSX = psSSX::instance();
    const auto run = [&](void (*work)()) {
        watch87.start();
        watchSSX.start();
        work();
        watch87.stop();
        watchSSX.stop();
    };
    const unsigned exception87 = ts87Base::Exception;
    ps87::setExceptionValue(0x3F);
    watch87.init();
    watchSSX.init();
    divideByZero87(), divideSSX(1, 0); // outside a run: not collected
    run([] {
        roundInexactly87(), divideSSX(1, 3);
        ntkFpuSsx4TS(ntkFpuSetControl, 0x400, 0xC00); // until the end of the run
    });
    ntkFpuSsx4TS(ntkFpuSetControl, 0, 0xC00);
    EXPECT_STREQ(watch87.strSW().c_str(), "_Inexact ");
    EXPECT_STREQ(watchSSX.strExceptionState().c_str(), "_Inexact ");
    EXPECT_FALSE(watch87.badStatus() || watchSSX.badStatus());
    run([] { divideByZero87(), divideSSX(1e300, 1e-300); });
    run([] {});
    EXPECT_STREQ(watch87.strSW().c_str(), "?Zerodivide _Inexact ");
    EXPECT_STREQ(watchSSX.strExceptionState().c_str(), "?Overflow _Inexact ");
    EXPECT_TRUE(watch87.badStatus() && watchSSX.badStatus());
    EXPECT_STREQ(watch87.strCW().c_str(),
                 "Down 53 Invalid Denormal Zerodivide Overflow Underflow Inexact ");
    EXPECT_STREQ(watchSSX.strCW().c_str(),
                 "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero ");
    divideByZero87(), divideSSX(1, 0);
    watch87.clear();
    watchSSX.clear();
    EXPECT_EQ(ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0) & 0x3F, 0u);
    EXPECT_EQ(ntkFpuSsx4TS(ntkSsxGet, 0, 0) & 0x3F, 0u);
    run([] {});
    EXPECT_STREQ(watch87.strSW().c_str(), "Ok");
    EXPECT_STREQ(watchSSX.strExceptionState().c_str(), "Ok");
    run([] { divideByZero87(), divideSSX(1, 0); });
    watch87.init();
    watchSSX.init();
    EXPECT_EQ(watch87.sw() | watch87.cw() | watchSSX.word(), 0u);
    ps87::setExceptionValue(exception87);
}

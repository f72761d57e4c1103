#include "pslibrary.h"

#include <gtest/gtest.h>

#include "aside.h"
#include "captured.h"

TEST(Library, EmptyEntryPointsGetFallbacks) {
    const Aside hook(ntkEnvironment);
    const Aside a(ntk_GetCpuFeatures);
    const Aside b(ntk_GetEnabledCpuFeatures);
    const Aside c(ntk_GetMaxCacheSizeB);
    const Aside d(ntk_GetStatusString);
    const Aside e(ntk_Init);
    const Aside f(ntk_SetCpuFeatures);
    const Aside g(ntk_SetNumThreads);
    const Aside h(ntk_GetNumThreads);
    EXPECT_TRUE(psRegNtkEnvironment([] { ntk_SetNumThreads = [](int n) { return 100 + n; }; }));
    const Captured console;
    setNtkEnvironment();
    EXPECT_EQ(ntk_SetNumThreads(1), 101); // the hook's stays
    ntk_SetNumThreads = nullptr;
    ntkEnvironment = nullptr;
    setNtkEnvironment(); // and reports nothing more
    EXPECT_EQ(console.text(), "\nBrask NTK Core library functions have been integrated into PS\n");
    EXPECT_EQ(ntk_SetNumThreads(1), -2);
    EXPECT_EQ(ntk_GetNumThreads(nullptr), -2);
    EXPECT_EQ(ntk_GetCpuFeatures(nullptr, nullptr), -2);
    EXPECT_EQ(ntk_GetEnabledCpuFeatures(), 0u);
    EXPECT_EQ(ntk_Init(), -2);
    EXPECT_EQ(ntk_SetCpuFeatures(1), -2);
    EXPECT_EQ(ntk_GetMaxCacheSizeB, ntkGetMaxCacheSizeB);
    EXPECT_STREQ(ntk_GetStatusString(0), "OK");
    EXPECT_STREQ(ntk_GetStatusString(1), "Note");
    EXPECT_STREQ(ntk_GetStatusString(-1), "Fail");
}

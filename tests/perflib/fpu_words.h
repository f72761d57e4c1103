#pragma once

#include <ntkcore.h>

#include <gtest/gtest.h>

// Gives the floating-point words back to the tests that follow as this one found them.
class FpuWords : public testing::Test {
protected:
    void TearDown() override {
        ntkFpuSsx4TS(ntkFpuClear, 0, 0);
        ntkFpuSsx4TS(ntkFpuSetControl, m_control, 0xFFFF);
        ntkFpuSsx4TS(ntkSsxSet, m_word, 0xFFFF);
    }

private:
    const unsigned m_control = ntkFpuSsx4TS(ntkFpuGetControl, 0, 0);
    const unsigned m_word = ntkFpuSsx4TS(ntkSsxGet, 0, 0);
};

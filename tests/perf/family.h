#pragma once

#include <fstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "files.h"
#include "kxdc.h"

// A registered test by the function that it measures. The exception fails a test that has the name
// wrong, and tells it.
inline psTest& findTest(const std::string& function) {
    for (psTest* test : *pTestList) {
        if (test->functionName() == function.c_str()) {
            return *test;
        }
    }
    throw std::invalid_argument("no test measures " + function);
}

// Files of this process's own, and the shared parameters put on one of them.
class FamilyTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (g_codeLen.name().empty()) {
            regTestParameters();
        }
        setNtkEnvironment();
    }
    void SetUp() override { g_tool.setMethodLoop(1); }
    void TearDown() override { g_tool.setMethodAuto(); }

    static std::string makeFile(const char* name, const std::string& contents) {
        const std::string path = testPath(name);
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }
    // The parameters' only values, taken by a run as well as by single steps.
    static void choose(const std::string& length, const std::string& file) {
        g_codeLen.translate(length.c_str());
        g_codeFile.translate(file.c_str());
        g_codeLen.firstValue();
        g_codeFile.firstValue();
    }
    // Text that LZ4 finds matches in, near and far.
    static std::string sampleText(size_t length) {
        std::string text;
        for (unsigned i = 0; text.size() < length; i++) {
            text += "line " + std::to_string(i * 7919 % 1000) + " of the sample; ";
        }
        text.resize(length);
        return text;
    }
};

#pragma once

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "files.h"
#include "kxdc.h"

// A registered test by the function that it measures. The exception fails a test that asks for a
// function without one, and names the function.
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
        return writeFile(testPath(name), contents);
    }
    // The parameters' only values, taken by a run as well as by single steps.
    static void choose(const std::string& length, const std::string& file) {
        g_codeLen.translate(length.c_str());
        g_codeFile.translate(file.c_str());
        g_codeLen.firstValue();
        g_codeFile.firstValue();
    }
    // Not inlined: gcc 12 would warn of overrides that the parameter does not have.
    [[gnu::noinline]] static void set(psParameter& parm, const std::string& value) {
        parm.translate(value.c_str());
        parm.firstValue();
    }
    // A parameter of the test by its name; none when the name is empty.
    static void setNamed(psTest& test, const std::string& name, const std::string& value) {
        for (psParameter* parm : test.parms()) {
            if (!name.empty() && parm->name() == name.c_str()) {
                set(*parm, value);
            }
        }
    }
    // The test with each of its parameters at the first value; its data are not prepared yet.
    static psTest& started(const std::string& function) {
        psTest& test = findTest(function);
        test.forgetParms();
        EXPECT_TRUE(test.canStart()) << function;
        for (psParameter* parm : test.parms()) {
            parm->firstValue();
        }
        test.tool().setMethodLoop(1);
        return test;
    }
    // The row that the test's combination makes in the table.
    static std::string cellsOf(psTest& test) {
        const std::string path = testPath("cells.csv");
        EXPECT_TRUE(g_cstrm.addStream(path.c_str(), false));
        test.parmsToCstrm();
        g_cstrm << "\n";
        g_cstrm.close();
        return readFile(path);
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

#include "pscond.h"

#include <string>

#include <gtest/gtest.h>

#include "plain_test.h"

// Options as "f", "t" or "m", then the argument; words of a text separated by blanks.
static void addConditions(psConditions& conditions, const char* options) {
    psStringList words;
    psString(options).parse(words, " ");
    for (const psString& word : words) {
        const int group = word[0] == 'f'   ? PS_BY_FUNCTION
                          : word[0] == 't' ? PS_BY_TEST
                                           : PS_BY_FILE;
        conditions.append(psMakeCondition(word.substr(1), group));
    }
}

TEST(Conditions, AdmitTests) {
    PlainTest a("ntksEncodeLZ4_8u", "TimdcLZ4", "perf/p_dclz4.cpp");
    PlainTest b("ntksEncodeLZ4Dict_8u", "TimdcLZ4Dict/second", "perf/p_dclz4.cpp");
    PlainTest c("ntksCRC32_8u", "TimdcChecksum", "perf/p_dcchecksum_ia.cpp");
    PlainTest d("ntksCRC32C_16s", "TimdcChecksum", "perf/p_dcchecksum_ia.cpp");
    const PlainTest* const tests[] = {&a, &b, &c, &d};

    enum { And = 0, Or = 1 };
    const struct {
        const char* options;
        int logic;
        const char* admitted;
    } cases[] = {
        {"", And, "abcd"},
        // One group, the four forms.
        {"fLZ4", And, "ab"},
        {"flz4", And, ""},
        {"fLZ4 f-Dict", And, "a"},
        {"f+8u f+CRC", And, "c"},
        {"f-8u", And, "d"},
        {"f=ntksCRC32_8u", And, "c"},
        {"f*8u", And, ""},
        {"f--8u", And, "abcd"}, // not one with "-8u"
        {"f=ntksCRC32_8u f=ntksCRC32C_16s", And, "cd"},
        // An exact condition that holds overrules all others of its group.
        {"f=ntksCRC32_8u fLZ4", And, "abc"},
        {"f=ntksCRC32_8u f-8u", And, "cd"},
        {"f=ntksCRC32_8u f+Dict", And, "bc"},
        // Groups together.
        {"tTimdcLZ4", And, "ab"},
        {"t=TimdcLZ4Dict", And, "b"},
        {"t-second", And, "abcd"},
        {"mchecksum", And, "cd"},
        {"f8u mchecksum", And, "c"},
        {"fDict tChecksum", Or, "bcd"},
        {"fDict t=none m=none", Or, "b"},
    };
    for (const auto& k : cases) {
        psConditions conditions;
        addConditions(conditions, k.options);
        conditions.setLogic(k.logic);
        std::string admitted;
        for (int i = 0; i < 4; ++i) {
            if (conditions.tobeRun(tests[i])) {
                admitted += static_cast<char>('a' + i);
            }
        }
        EXPECT_EQ(admitted, k.admitted) << k.options << (k.logic ? " or" : " and");
    }
}

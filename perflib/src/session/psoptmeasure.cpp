// Keys for how tests are measured.
#include "pscpufeatures.h"
#include "psctrl87.h"
#include "psoptionutil.h"
#include "pstest.h"

#include <memory>

namespace {

// 0: no class of that name.
int priorityClass(const psString& argument) {
    switch (argument[0]) {
    case 'H': return 1;
    case 'N': return 2;
    case 'L': return 3;
    default: return 0;
    }
}

psString priorityInfo(const psString& argument) {
    static constexpr const char* const texts[] = {
        "ignored: incorrect priority, HIGH, NORMAL or LOW is expected",
        "set high process priority (superuser only)",
        "set normal process priority (superuser only)",
        "set low process priority (superuser only)",
    };
    return texts[priorityClass(argument)];
}

void setPriority(const psString& argument, psSession*) {
    if (const int priority = priorityClass(argument)) {
        psTool::m_priority = priority;
    }
}

bool isOnlyHot(const psString& argument) {
    return argument.startsWith("O");
}

psString hotInfo(const psString& argument) {
    return isOnlyHot(argument) ? "add 'Interest' column to table file and run only hot tests"
                               : "add 'Interest' column to table file";
}

void setHot(const psString& argument, psSession*) {
    psTest::m_hot = isOnlyHot(argument) ? 2 : 1;
}

psString unmaskInfo(const psString&) {
    return "unmask floating-point exceptions";
}

// Inexact alone stays masked: nearly every floating-point function raises it.
void unmaskExceptions(const psString&, psSession*) {
    psTest::m_unmasked = true;
    ps87::setExceptionValue(0x20);
    psSSX::setExceptionValue(0x1000);
}

// The labels of the list that are in no row of the feature table, joined by ",".
psString unknownFeatures(const psString& list) {
    int count = 0;
    psCpuFeatures::split(nullptr, list, ',', count);
    const auto labels = std::make_unique<psString[]>(static_cast<size_t>(count));
    psCpuFeatures::split(labels.get(), list, ',', count);
    psString unknown;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        if (!labels[i].empty() && psCpuFeatures::cpuFeatures(labels[i]) == 0) {
            unknown += unknown.empty() ? "" : ",";
            unknown += labels[i];
        }
    }
    return unknown;
}

psString featuresInfo(const psString& argument) {
    const unsigned long long mask = psCpuFeatures::cpuFeatures(argument);
    const psString unknown = unknownFeatures(argument);
    if (!mask) {
        return unknown.empty() ? "ignored: empty cpu features list"
                               : "ignored: unknown cpu features " + unknown;
    }
    const psString text = "call ntkSetCpuFeatures( " + psFormat("%#llx", mask) + " )";
    return unknown.empty() ? text : text + ", unknown cpu features " + unknown + " are ignored";
}

void setFeatures(const psString& argument, psSession* session) {
    if (const unsigned long long mask = psCpuFeatures::cpuFeatures(argument)) {
        session->setCpuFeatures(mask);
    }
}

bool isSetAndUse(const psString& argument) {
    return argument.startsWith("U");
}

psString setAndUseInfo(const psString& argument) {
    return isSetAndUse(argument) ? "measure functions with data set & use"
                                 : "ignored: incorrect option key, -SU is expected";
}

void setSetAndUse(const psString& argument, psSession*) {
    if (isSetAndUse(argument)) {
        g_tool.harnessCalls = true;
    }
}

psString cacheInfo(const psString&) {
    return "run tests with data in cache and out of cache";
}

void setCache(const psString&, psSession*) {
    psTest::m_cache = true;
}

bool isUnsorted(const psString& argument) {
    return argument.startsWith("-");
}

psString sortInfo(const psString& argument) {
    return isUnsorted(argument) ? "don't sort functions" : "sort functions";
}

void setSort(const psString& argument, psSession* session) {
    if (isUnsorted(argument)) {
        session->setQuickMode(true);
    }
}

constexpr const char* unmaskDetail =
    "All floating-point exceptions but inexact are unmasked\n"
    "The test that raises such exception is stopped with result EXCPTFAIL\n";

// The session puts the feature list in place of the tab.
constexpr const char* featuresDetail =
    "This key works only if you link ntk*merged libraries\n"
    "    and include <ntkcore.h> before <kx.h> in your test file.\n"
    "cpu-features is a list of following names separated by comma:\n\t";

constexpr const char* setAndUseDetail =
    "This option should be used to prove parallelize function advantage\n"
    "Test does not show clear function performance\n";

constexpr const char* cacheDetail =
    "This option should be used to clarify performance difference between in-cache and "
    "out-of-cache data\n"
    "Not all tests support this option\n";

} // namespace

void psInitMeasureOptions(psOptionList& options) {
    psAddOption<PS_USED_IN_RUN, priorityInfo, setPriority>(
        options, 'Y',
        "-Y<HIGH|NORMAL>  = set high or normal process prioritY (normal is default)\n",
        psLastKeyText("-Y"));
    psAddOption<PS_USED_IN_LIST, hotInfo, setHot>(
        options, 'H',
        "-H[ONLY]         = add 'Interest' column to table file [and run only hot tests]\n",
        "If both -H & -HO keys present in command line then only the last key is valid\n");
    psAddOption<PS_USED_IN_RUN, unmaskInfo, unmaskExceptions>(
        options, 'W', "-W= unmask floating-point exceptions\n", unmaskDetail, true);
    psAddOption<PS_USED_IN_LIST, featuresInfo, setFeatures>(
        options, 'T', "-T[<cpu-features>]   = call ntkSetCpuFeatures( cpuFeatures )\n",
        featuresDetail + psLastKeyText("-T"));
    psAddOption<PS_USED_IN_RUN, setAndUseInfo, setSetAndUse>(
        options, 'S', "-SU              = measure functions with data set & use\n",
        setAndUseDetail);
    psAddOption<PS_USED_IN_RUN, cacheInfo, setCache>(
        options, 'C',
        "-C               = run tests with data in cache and out of cache (if that is supported "
        "by test)\n",
        cacheDetail);
    psAddOption<PS_USED_IN_LIST, sortInfo, setSort>(
        options, 's', "-s[-]            = sort or don't sort functions (sort mode is default)\n",
        "If both -s & -s- keys present in command line then only the last key is valid\n");
}

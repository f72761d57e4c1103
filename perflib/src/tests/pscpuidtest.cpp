#include "pscpuidtest.h"

#include "psbase.h"
#include "pscond.h"
#include "pscpureport.h"
#include "psinfo.h"

psInformationTest::psInformationTest(const psString& function, const psString& title,
                                     const psString& source)
    : psTest(psOldFunc{nullptr}, function, source, title) {}

psResult psInformationTest::run() {
    beginRun();
    if (!setIniSection(functionName())) {
        return PS_UNDEFINED;
    }
    printInformation();
    raiseResult(PS_OK);
    endRun();
    return result();
}

void __psOSTest::printInformation() {
    g_ostrm << PS_NORMAL << " OS       : " << psOS() << "\n" << PS_END;
}

void __psHostTest::printInformation() {
    g_ostrm << PS_NORMAL << " Computer : " << psHost() << "\n" << PS_END;
}

bool __psBraskCpuTest::tobeRun(const psConditions& conditions) {
    m_named = conditions.names(this);
    return psInformationTest::tobeRun(conditions);
}

void __psBraskCpuTest::printInformation() {
    unsigned long long present = 0;
    ntk_GetCpuFeatures(&present, nullptr);
    const unsigned long long enabled = ntk_GetEnabledCpuFeatures();
    const bool isFull = m_named || g_ostrm.accepts(PS_DETAIL);
    g_ostrm << PS_NORMAL
            << (isFull ? psCpuReport(psReadCpuid, present, enabled)
                       : psFeatureLine(present, enabled))
            << PS_END;
}

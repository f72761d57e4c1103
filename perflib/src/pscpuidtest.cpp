#include "pscpuidtest.h"

#include "psbase.h"
#include "pscpufeatures.h"
#include "psinfo.h"

psInformationTest::psInformationTest(const psString& function, const psString& title,
                                     const psString& source)
    : psTest(psOldFunc{nullptr}, function, source, title) {}

psResult psInformationTest::run() {
    beginRun();
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

void __psBraskCpuTest::printInformation() {
    unsigned long long present = 0;
    ntk_GetCpuFeatures(&present, nullptr);
    const unsigned long long enabled = ntk_GetEnabledCpuFeatures();
    g_ostrm << PS_NORMAL << " Features :";
    for (const psCpuFeature* row = psCpuFeatures::begin(); row != psCpuFeatures::end(); ++row) {
        if ((present & row->mask) == row->mask) {
            g_ostrm << " " << row->label << ((enabled & row->mask) == row->mask ? "" : "(off)");
        }
    }
    g_ostrm << "\n" << PS_END;
}

#include "psctrlstatus.h"

#include "psctrl87.h"
#include "psostream.h"

bool psBadCtrlStatus(bool& bad87, bool& badSSX) {
    bad87 = ps87::instance().badStatus();
    badSSX = psSSX::instance().badStatus();
    return bad87 || badSSX;
}

void psPrintCtrlStatus(bool p87, bool pSSX) {
    if (p87) {
        g_ostrm << PS_WARN << "-- Status    87: " << ps87::instance().strSW() << "\n" << PS_END;
    }
    if (pSSX) {
        g_ostrm << PS_WARN << "-- Status    SSX: " << psSSX::instance().strExceptionState() << "\n"
                << PS_END;
    }
}

void psClearCtrlStatus() {
    ps87::instance().clear();
    psSSX::instance().clear();
}

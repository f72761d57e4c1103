#include "ps.h"
#include "psalloc.h"
#include "psdenormals.h"
#include "pstrace.h"

// 0 whatever the tests gave: the outcome is in the log and in the tables.
int main(int argc, char** argv) {
    psFlushDenormals();
    g_trace.traceIn("main");
    if (!pSession)
        psRegSession(new psSession);
    pSession->run(argc, argv);
    psFreeAll();
    g_trace.traceOut("main");
    return 0;
}

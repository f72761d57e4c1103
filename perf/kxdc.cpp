#include "kxdc.h"

#include "dchooks.h"
#include "pscpuidtest.h"

psStepIterator<int> g_huffLen;
psStepIterator<int> g_codeLen;
psFileIterator g_codeFile;

// The columns that the families fill: the bytes of a call, the file, what else distinguishes
// measurements of a test apart (dictionary, sorting hint, level, method) and the compression ratio.
static const char* const parmColumns[] = {"Length", "CodeFile", "Variant", "Ratio"};

static const char* const corpusFiles[] = {"bib",   "book1", "book2",  "geo",    "news",
                                          "obj1",  "obj2",  "paper1", "paper2", "pic",
                                          "progc", "progl", "progp",  "trans"};

void regTestParameters() {
    psRegParm(g_huffLen);
    psRegParm(g_codeLen);
    psRegParm(g_codeFile);
    g_huffLen.init(1024, 32768, 2, PS_STEP_MUL, "HuffLength");
    g_codeLen.init(16384, 262144, 2, PS_STEP_MUL, "CodeLength");
    g_codeFile.init("", "CodeFile");
    for (const char* file : corpusFiles) {
        g_codeFile.add(file);
    }
}

int readCodeFile(void* buffer) {
    const bool longer =
        g_codeLen.operation() == PS_STEP_MUL && g_codeLen.value() != g_codeLen.first();
    return g_codeFile.readData(buffer, g_codeLen.value(), longer ? g_codeLen.step() : 0);
}

[[maybe_unused]] static const bool g_registered = [] {
    registerHooks();
    for (const char* name : parmColumns) {
        psRegParmColumn(name);
    }
    psRegTest(new __psOSTest("__psOS", "OS information", "perf/kxdc"));
    psRegTest(new __psHostTest("__psHost", "Computer information", "perf/kxdc"));
    psStringList files;
    for (const char* file : corpusFiles) {
        files.append(file);
    }
    psRegInputParm("CodeFile", files);
    return psRegParmFunc(regTestParameters);
}();

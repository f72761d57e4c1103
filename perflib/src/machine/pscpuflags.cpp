// The processor's features as the library reports them.

#include "pscpureport.h"

#include <ntkcore.h>

#include "pscpufeatures.h"

namespace {

constexpr int lineWidth = 79;

// SSE, AVX, mask registers, upper halves and upper registers of the 512-bit vectors.
constexpr unsigned long long states512 = 0xe6;

bool holds(unsigned long long features, unsigned long long mask) {
    return (features & mask) == mask;
}

const char* yesNo(bool yes) {
    return yes ? "yes" : "no";
}

psString savedStateLine(const char* width, bool isSaved) {
    return psFormat("    OS support of %s vector state : %s\n", width, yesNo(isSaved));
}

} // namespace

psString psFeatureFlags(unsigned long long present, unsigned long long enabled,
                        unsigned long long savedStates) {
    if (present == 0) {
        return {};
    }
    psString text = "    Feature Flags\n"
                    "    got by ntkGetCpuFeatures & ntkGetEnabledCpuFeatures\n\n"
                    "    Feature           Present  Enabled\n";
    for (const psCpuFeature& row : psCpuFeatures()) {
        text += psFormat("    %-16s  %-7s  %s\n", row.label, yesNo(holds(present, row.mask)),
                         yesNo(holds(enabled, row.mask)));
    }
    return text + "\n" + savedStateLine("256-bit", holds(present, NTK_CPU_AVX_OS)) +
           savedStateLine("512-bit", holds(savedStates, states512));
}

psString psFeatureLine(unsigned long long present, unsigned long long enabled) {
    const psString head = " Features :";
    psString text;
    psString line = head;
    for (const psCpuFeature& row : psCpuFeatures()) {
        if (!holds(present, row.mask)) {
            continue;
        }
        const psString word = psString(" ") + row.label + (holds(enabled, row.mask) ? "" : "(off)");
        if (line.length() + word.length() > lineWidth) {
            text += line + "\n";
            line = "";
            line.resize(head.length());
        }
        line += word;
    }
    return text + line + "\n";
}

#include "psresult.h"

namespace {
struct ResultText {
    const char* word;
    const char* shortName;
};
constexpr ResultText resultTexts[psResultCount] = {
    {"was not run", "UNDEFINED"},
    {"successfully", "OK"},
    {"wrong measure accuracy", "ACCURWRN"},
    {"modified control status", "BADSTSWRN"},
    {"test data note", "DATAWRN"},
    {"lib function note", "FUNCWRN"},
    {"note", "WRN"},
    {"accuracy fail", "ACCURFAIL"},
    {"test data fail", "DATAFAIL"},
    {"lib function fail", "FUNCFAIL"},
    {"exception", "EXCPTFAIL"},
    {"fail", "FAIL"},
};

bool isKnown(int result) {
    return result >= 0 && result < psResultCount;
}
} // namespace

const char* psResultWord(int result) {
    return isKnown(result) ? resultTexts[result].word : "unknown result";
}

const char* psResultShortName(int result) {
    return isKnown(result) ? resultTexts[result].shortName : "UNKNOWN";
}

MessageLevel psResultLevel(int result) {
    return psIsNote(result) ? PS_WARN : PS_ERR;
}

psResult psResultAtLevel(psResult result, int outLevel) {
    return outLevel < PS_WARN && psIsNote(result) ? PS_OK : result;
}

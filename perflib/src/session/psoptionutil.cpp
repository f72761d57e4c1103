#include "psoptionutil.h"

#include <iterator>
#include <limits>

namespace {

struct Level {
    const char* name;
    OutputLevel level;
};
constexpr Level levels[] = {
    {"ERR", PS_OUT_ERR},   {"WARN", PS_OUT_WARN},   {"PERF", PS_OUT_PERF},
    {"INFO", PS_OUT_INFO}, {"TRACE", PS_OUT_TRACE}, {"DATA", PS_OUT_DATA},
};
constexpr int levelCount = static_cast<int>(std::size(levels));

} // namespace

int psOutputLevels(const psString& names) {
    int values[levelCount];
    psString texts[levelCount];
    for (int i = 0; i < levelCount; ++i) {
        values[i] = levels[i].level;
        texts[i] = levels[i].name;
    }
    return flagValue(names, values, texts, levelCount);
}

bool psReadCount(const psString& argument, int& count) {
    long long number = count;
    number << argument;
    if (argument.isBad() || number < 1 || number > std::numeric_limits<int>::max()) {
        return false;
    }
    count = static_cast<int>(number);
    return true;
}

bool psIsKeyGiven(char key) {
    return pSession && pSession->keys().isGiven(key);
}

bool psSplitPreset(const psString& argument, psString& name, psString& value) {
    const int equals = argument.find("=");
    if (equals == psString::npos) {
        return false;
    }
    name = argument.substr(0, equals).trimmed();
    value = argument.substr(equals + 1).trimmed();
    return !name.empty();
}

const psFileUses::Use* psUseOfFile(const psString& path) {
    return pSession ? pSession->fileUses().find(path) : nullptr;
}

psString psCountText(char key, const psString& argumentName) {
    return "If " + argumentName + " is less than 1 or is not a number then the key is ignored\n" +
           psLastKeyText("-" + psString(key));
}

psString psLastKeyText(const psString& keys) {
    return "If several " + keys + " keys present in command line then only the last key is valid\n";
}

psString psAllFilesText(const psString& keys, const psString& verb) {
    return "If several " + keys + " keys present in command line then all these files will be " +
           verb + "\n    and filled\n";
}

psString psDefaultPathText(char dirKey, const psString& extension) {
    return "If file-name is empty then default file path will be used:\n"
           "    <default-dir>/<default-name>" +
           extension +
           "\n"
           "    <default-dir> : <exe-file-dir> or -" +
           psString(dirKey) +
           " key argument if any\n"
           "    <default-name>: <exe-file-name-without-extention> or -n key argument if any\n";
}

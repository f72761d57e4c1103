// The help of the command line, and what depends on all of its keys.
#include "ps.h"
#include "pscpufeatures.h"
#include "pswrap.h"

namespace {

constexpr char quickHelp = 1;

// The text of a key in a list of keys: a key kept for old command lines has none.
psString fullText(const psOption& option) {
    const psString mark = option.hidden ? "This is hidden key used by developers only\n" : "";
    return option.help + mark + option.detail + "\n";
}

psString keyText(const psString& key, const psOption* option) {
    if (!option) {
        return "Key -" + key + " is not valid\n";
    }
    const psString help = option->help.empty() ? "Key -" + key + " is deprecated\n" : option->help;
    return help +
           (option->detail.empty() ? "No extended description for this key\n" : option->detail);
}

// A terminal would break the long lines in the middle of words.
void putHint(const psString& text) {
    g_ostrm << PS_ERR;
    g_ostrm.writeToConsole(psWrapLines(text, psConsoleColumns()));
    g_ostrm.writeToLogs(text);
    g_ostrm << PS_END;
}

psString hintTitle(const char* title, bool hidden) {
    return psString(title) + (hidden ? " with hidden keys\n" : "\n");
}

} // namespace

void psSession::hint(char key, bool hidden) {
    if (key == quickHelp) {
        hint_quick(hidden);
    } else if (key == (hidden ? '?' : 'h')) {
        hint_full(hidden);
    } else {
        hint_descr(key);
    }
}

void psSession::hint_quick(bool hidden) {
    putHint(hintTitle("QUICK HELP", hidden));
    for (const psOption& option : m_options) {
        if (hidden || !option.hidden) {
            putHint(option.help);
        }
    }
}

void psSession::hint_full(bool hidden) {
    putHint(hintTitle("EXTENDED HELP", hidden));
    for (const psOption& option : m_options) {
        if (!option.help.empty() && (hidden || !option.hidden)) {
            putHint(fullText(option));
        }
    }
}

void psSession::hint_descr(char key) {
    putHint("EXTENDED KEY HELP\n" + keyText(psString(key), getOption(key)) +
            "\nUse -h option to type full key list\n");
}

int psSession::updateOptions() {
    if (psOption* const features = getOption('T')) {
        const int tab = features->detail.find("\t");
        if (tab != psString::npos) {
            features->detail = features->detail.substr(0, tab) + psCpuFeatures::optimizedList() +
                               features->detail.substr(tab + 1);
        }
    }
    if (m_batMode) {
        m_askMode = 0;
    } else if (m_askMode == 0) {
        m_askMode = PS_ASK_TIMING | PS_ASK_PARAMS;
    }
    return m_askMode;
}

// Command lines: the same keys from words, from a quoted text and from themselves; what the report
// says of a key is what the key does.
#include <string>

#include "ps.h"
#include "psistream.h"
#include "psoptionutil.h"
#include "pssettings.h"
#include "text.h"

namespace {

std::string show(const psCommandList& commands) {
    std::string text;
    for (const psCommandKey& command : commands) {
        text += command.key();
        text += command.arg().c_str();
        text += '\0';
    }
    return text;
}

psCommandList keysOf(const std::vector<std::string>& words) {
    std::vector<const char*> argv;
    for (const std::string& word : words) {
        argv.push_back(word.c_str());
    }
    psCommandList commands;
    commands.setArgs(static_cast<int>(argv.size()), argv.data());
    return commands;
}

std::string quoted(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += " \"";
        for (const char c : word) {
            text += c == '"' ? "\"\"" : std::string(1, c);
        }
        text += '"';
    }
    return text;
}

// The keys as words, each with its argument attached.
std::vector<std::string> wordsOf(const psCommandList& commands) {
    std::vector<std::string> words;
    for (const psCommandKey& command : commands) {
        if (&command != &commands.front()) {
            words.push_back(std::string("-") + command.key() + command.arg().c_str());
        }
    }
    return words;
}

// What its keys change is put back.
class Session : public psSession {
public:
    Session() {
        initSession();
        pSession = this;
    }
    ~Session() override { pSession = nullptr; }
    void restore() {
        g_settings = m_settings;
        g_istrm.removePresets();
        for (const RunCondition* condition : conditions()) {
            delete condition;
        }
        conditions().clear();
    }

private:
    const psSettings m_settings = g_settings;
};

std::string ending(const char* text, long long number) {
    return text + std::to_string(number);
}

// Of the keys that only set something: the others open files.
void checkEffect(Session& session, const psOption& option, const psString& argument) {
    const std::string report = option.report(argument).c_str();
    const bool isIgnored = report.starts_with("ignored");
    const int priority = g_settings.priority;
    option.apply(argument, &session);
    switch (option.key) {
    case 'c':
    case 'j':
    case 'J': {
        const int count = option.key == 'c'   ? g_settings.milliseconds
                          : option.key == 'j' ? g_settings.minCalls
                                              : g_settings.extLoops;
        FUZZ_CHECK(isIgnored || (count >= 1 && report.ends_with(ending(" to ", count))));
        break;
    }
    case 'd': {
        psString name, value;
        FUZZ_CHECK(psSplitPreset(argument, name, value) == !isIgnored);
        const psStringList unused = g_istrm.unusedPresets();
        FUZZ_CHECK(isIgnored || (!unused.empty() && !name.empty() && name == name.trimmed()));
        break;
    }
    case 'F': FUZZ_CHECK(g_settings.startFunc == argument); break;
    case 'Y': FUZZ_CHECK(isIgnored == (g_settings.priority == priority)); break;
    case 'L': FUZZ_CHECK(isIgnored == (psOutputLevels(argument) == 0)); break;
    case 'f':
    case 't':
    case 'm':
        FUZZ_CHECK(isIgnored == session.conditions().empty());
        FUZZ_CHECK(isIgnored || report.ends_with(session.conditions().back()->pattern().c_str()));
        break;
    default: break;
    }
}

void checkKeys(const psCommandList& commands) {
    static Session session; // building the table of keys takes most of the time
    psGivenKeys keys;
    keys.indexCommandLine(commands);
    keys.indexAll(commands, session.options());
    for (const psCommandKey& command : commands) {
        FUZZ_CHECK(keys.isGiven(command.key()) && keys.isOnLine(command.key()));
        const psCommandKey* const later = keys.overriddenBy(command, session.options());
        FUZZ_CHECK(!later || !keys.overriddenBy(*later, session.options()));
        const psOption* const option = session.getOption(command.key());
        if (option && !option->report(command.arg()).empty() && option->apply &&
            std::string("cjJdFYLftmkHCSsWAB").find(command.key()) != std::string::npos) {
            checkEffect(session, *option, command.arg());
            session.restore();
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    std::vector<std::string> words;
    while (!in.empty() && words.size() < 40) {
        words.emplace_back(fuzz::takeWord(in).c_str());
    }
    const psCommandList commands = keysOf(words);
    psCommandList fromText;
    fromText.setArgs(quoted(words).c_str());
    FUZZ_CHECK(show(fromText) == show(commands));
    FUZZ_CHECK(show(keysOf(wordsOf(commands))) == show(commands));
    checkKeys(commands);
    return 0;
}

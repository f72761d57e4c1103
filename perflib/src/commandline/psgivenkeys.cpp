#include "psgivenkeys.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// The group of keys of which only the last one holds; empty when every one of them holds.
psString groupOf(const psCommandKey& command) {
    switch (command.key()) {
    case '\0': return "";
    case 'I': return "i";
    case '?': return "h";
    case 'd': return "d" + command.arg().substr(0, command.arg().find("=")).trimmed();
    default: return strchr("igkFYHTsehcjJ", command.key()) ? psString(command.key()) : "";
    }
}

// An empty count keeps what was set before.
bool keepsValue(const psCommandKey& command) {
    return command.key() && strchr("cjJ", command.key()) && command.arg().trimmed().empty();
}

bool isIgnored(const psCommandKey& command, psOptionList& options) {
    const psOption* const option = options.getOption(command.key());
    return !option || option->report(command.arg()).startsWith("ignored");
}

} // namespace

void psGivenKeys::indexCommandLine(const psCommandList& commands) {
    *this = {};
    for (const psCommandKey& command : commands) {
        m_onLine[index(command.key())] = m_given[index(command.key())] = true;
    }
}

void psGivenKeys::indexAll(const psCommandList& commands, psOptionList& options) {
    std::fill(std::begin(m_given), std::end(m_given), false);
    for (const psCommandKey& command : commands) {
        m_given[index(command.key())] = true;
    }
    for (const psCommandKey& command : commands) { // now that info functions may ask for keys
        const psString group = groupOf(command);
        if (!group.empty() && !keepsValue(command) && !isIgnored(command, options)) {
            m_last[group] = &command;
        }
    }
}

bool psGivenKeys::isIniWritten() const {
    const auto last = m_last.find("i");
    return last != m_last.end() && last->second->key() == 'I';
}

const psCommandKey* psGivenKeys::overriddenBy(const psCommandKey& command,
                                              psOptionList& options) const {
    const auto last = m_last.find(groupOf(command));
    const bool holds = last == m_last.end() || last->second == &command || keepsValue(command);
    return holds || isIgnored(command, options) ? nullptr : last->second;
}

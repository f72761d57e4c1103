#include "psistream.h"

#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

#include "psinit.h"
#include "psinterruption.h"
#include "psostream.h"
#include "pssignalswait.h"

PS_INIT_SECOND psIStream g_istrm;

bool psIStream::setIniFile(const psString& name, bool write) {
    const bool opened = m_ini.open(name, write);
    m_writing = opened && write;
    return opened;
}

bool psIStream::sectionExist(const psString& section) const {
    return m_ini.sectionExist(section);
}

bool psIStream::closeIniFile() {
    m_writing = false;
    return m_ini.close();
}

void psIStream::declareName(const psString& name) {
    if (psValueItem* const item = m_ini.find(m_section, name)) {
        item->m_declared = true;
    }
}

void psIStream::markSectionRead() {
    if (psSectionItem* const section = m_ini.sections().find(m_section)) {
        section->m_read = true;
    }
}

void psIStream::preset(const psString& name, const psString& value) {
    if (Preset* const earlier = m_presets.find(name)) {
        earlier->value = value;
    } else {
        m_presets.append(new Preset{name, value});
    }
}

void psIStream::removePresets() {
    m_presets.removeAll();
}

psStringList psIStream::unusedPresets() const {
    psStringList names;
    for (const Preset* preset : m_presets) {
        if (!preset->used) {
            names.append(preset->name);
        }
    }
    return names;
}

void psIStream::markUsed(const psString& presetName) {
    psString value;
    findPreset(presetName, value);
}

bool psIStream::findPreset(const psString& name, psString& value) {
    Preset* const preset = m_presets.find(name);
    if (preset) {
        preset->used = true;
        value = preset->value;
    }
    return preset != nullptr;
}

static bool hasValue(const psValueItem* item) {
    return item && !(item->m_value == psValueItem::noValue);
}

bool psIStream::willAsk(const psString& name) const {
    // A session that writes the settings measures nothing: an answer would go nowhere.
    return isAsking() && !m_writing && !name.empty() && !m_presets.exist(name) &&
           !hasValue(m_ini.find(m_section, name)) && !isSetForAllTests(name);
}

// What the common section holds applies to every test that has no value of its own.
bool psIStream::isSetForAllTests(const psString& name) const {
    const psValueItem* const item = m_ini.find(commonSection, name);
    return hasValue(item) && item->m_declared;
}

psIStream::Source psIStream::read(const psString& name, const psString& prompt,
                                  const psString& defaultText, psString& value) {
    if (name.empty()) { // nothing can refer to it
        return PS_FROM_NOTHING;
    }
    const psValueItem* const item = m_ini.find(m_section, name);
    if (m_writing && !item) {
        m_ini.write(m_section, name, defaultText, prompt == name ? psString() : prompt);
    }
    declareName(name);
    // A preset is for one run: it must not pass for a default in the sections written after this.
    if (!m_writing && findPreset(name, value)) {
        return PS_FROM_PRESET;
    }
    if (hasValue(item)) {
        value = item->m_value;
        return PS_FROM_SETTINGS;
    }
    return willAsk(name) ? ask(name, prompt, defaultText, value) : PS_FROM_NOTHING;
}

// A reading call would go on after Ctrl-C. What is no terminal sends none, and may have been read
// further than the last answer. Signals wait from the check until ppoll lets them in: one between
// the two would be noted and then slept over.
static void awaitAnswer(FILE* console) {
    pollfd input = {fileno(console), POLLIN, 0};
    if (!isatty(input.fd)) {
        return;
    }
    const psSignalsWait waiting;
    do {
        psInterruption::check();
    } while (ppoll(&input, 1, nullptr, &waiting.maskBefore()) < 0 && errno == EINTR);
}

// False at the end of the input.
static bool readAnswer(FILE* console, psString& answer) {
    awaitAnswer(console);
    char* text = nullptr;
    size_t room = 0;
    const ssize_t length = getline(&text, &room, console);
    if (length >= 0) {
        int end = static_cast<int>(length);
        while (end > 0 && (text[end - 1] == '\n' || text[end - 1] == '\r')) {
            --end;
        }
        answer = psString(text, end).trimmed();
    }
    free(text);
    return length >= 0;
}

// A terminal has shown the answer and its line end already; a log has neither.
static void showAnswer(FILE* console, const psString& answer) {
    g_ostrm << PS_ERR;
    if (isatty(fileno(console))) {
        g_ostrm.writeToLogs(answer + "\n");
    } else {
        g_ostrm.write(answer + "\n");
    }
    g_ostrm << PS_END;
}

// False: the input has ended.
bool psIStream::typed(const psString& prompt, const psString& defaultText, psString& answer) {
    g_ostrm << PS_ERR << prompt << " [" << defaultText << "]: " << PS_END_FLUSH;
    if (!readAnswer(m_console, answer)) {
        m_console = nullptr;
        g_ostrm << PS_ERR << "\n-- The console input has ended, defaults are taken from here on\n"
                << PS_END_FLUSH;
        return false;
    }
    showAnswer(m_console, answer);
    return true;
}

psIStream::Source psIStream::ask(const psString& name, const psString& prompt,
                                 const psString& defaultText, psString& value) {
    psString answer;
    if (!m_memory || !m_memory->knowsAnswer(name, answer)) {
        if (m_memory) {
            m_memory->asks();
        }
        if (!typed(prompt, defaultText, answer)) {
            return PS_FROM_NOTHING;
        }
        if (m_memory) {
            m_memory->answered(name, answer);
        }
    }
    if (answer.empty()) {
        return PS_FROM_NOTHING;
    }
    value = answer;
    return PS_FROM_CONSOLE;
}

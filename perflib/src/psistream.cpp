#include "psistream.h"

#include <cstdlib>
#include <unistd.h>

#include "psinit.h"
#include "psostream.h"

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

void psIStream::preset(const psString& name, const psString& value) {
    for (Preset& preset : m_presets) {
        if (preset.name == name) {
            preset.value = value;
            return;
        }
    }
    m_presets.append({name, value, false});
}

psStringList psIStream::unusedPresets() const {
    psStringList names;
    for (const Preset& preset : m_presets) {
        if (!preset.used) {
            names.append(preset.name);
        }
    }
    return names;
}

bool psIStream::findPreset(const psString& name, psString& value) {
    for (Preset& preset : m_presets) {
        if (preset.name == name) {
            preset.used = true;
            value = preset.value;
            return true;
        }
    }
    return false;
}

psIStream::Source psIStream::read(const psString& name, const psString& prompt,
                                  const psString& defaultText, psString& value) {
    if (name.empty()) { // nobody can address it
        return PS_FROM_NOTHING;
    }
    const bool inFile = m_ini.valueExist(m_section, name);
    if (m_writing && !inFile) {
        m_ini.write(m_section, name, defaultText, prompt == name ? psString() : prompt);
    }
    if (findPreset(name, value)) {
        return PS_FROM_PRESET;
    }
    if (inFile) {
        const psString text = m_ini.read(m_section, name);
        if (!(text == psValueItem::noValue)) {
            value = text;
            return PS_FROM_SETTINGS;
        }
    }
    // A session that writes the settings measures nothing: an answer would go nowhere.
    return isAsking() && !m_writing ? ask(prompt, defaultText, value) : PS_FROM_NOTHING;
}

// False at the end of the input.
static bool readAnswer(FILE* console, psString& answer) {
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

psIStream::Source psIStream::ask(const psString& prompt, const psString& defaultText,
                                 psString& value) {
    g_ostrm << PS_ERR << prompt << " [" << defaultText << "]: " << PS_END_FLUSH;
    psString answer;
    if (!readAnswer(m_console, answer)) {
        m_console = nullptr;
        g_ostrm << PS_ERR << "\n-- The console input has ended, defaults are taken from here on\n"
                << PS_END_FLUSH;
        return PS_FROM_NOTHING;
    }
    showAnswer(m_console, answer);
    if (answer.empty()) {
        return PS_FROM_NOTHING;
    }
    value = answer;
    return PS_FROM_CONSOLE;
}

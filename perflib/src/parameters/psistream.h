#pragma once

#include <cstdio>

#include "psinifile.h"
#include "psstring.h"

// Where parameter values come from, highest priority first: presets ("-d"), the settings file,
// the console, the parameter's default.
class psIStream {
public:
    // Somebody who remembers the answers of an earlier process of this run.
    class Memory {
    public:
        virtual ~Memory() = default;
        // True: answer has what was typed for name then.
        virtual bool knowsAnswer(const psString& name, psString& answer) = 0;
        virtual void asks() = 0; // the process waits for a person
        virtual void answered(const psString& name, const psString& answer) = 0;
    };
    void setMemory(Memory* memory) { m_memory = memory; } // null: there is none

    enum Source { PS_FROM_NOTHING, PS_FROM_PRESET, PS_FROM_SETTINGS, PS_FROM_CONSOLE };

    // The section of the settings file that holds the parameters common to all tests.
    static constexpr const char* commonSection = "Perf System";

    // The console on which questions are asked; null: none are asked any more.
    void setIStream(FILE* console) { m_console = console; }
    // Whether the readers that follow may ask on the console.
    void setAsking(bool asking) { m_asking = asking; }
    bool isAsking() const { return m_asking && m_console != nullptr; }

    // False when the file cannot be opened (read) or created (write).
    bool setIniFile(const psString& name, bool write);
    bool isWriting() const { return m_writing; }
    // What was read, empty when it could not be; with the name all the same.
    const psIniFile& settings() const { return m_ini; }
    bool sectionExist(const psString& section) const;
    void setSection(const psString& section) { m_section = section; }
    const psString& section() const { return m_section; }
    // Declares a key that the current section may hold although nothing in this session reads it.
    void declareName(const psString& name);
    // Everything that the current section may hold is declared now: another key in it is a mistake.
    void markSectionRead();
    // Writes the settings file back when it was opened for writing. False: not written, reported.
    bool closeIniFile();

    void preset(const psString& name, const psString& value);
    void removePresets(); // for another session in this process
    // Presets that no reader has asked for, in command-line order.
    psStringList unusedPresets() const;
    // A reader of an earlier process of this run has asked for it.
    void markUsed(const psString& presetName);

    // Looks for a value of the parameter name in the current section. A question shows the
    // prompt and the default in square brackets; an empty answer, or the end of the input, gives
    // PS_FROM_NOTHING (the default stands). When a settings file is being written, an absent
    // parameter is added to it with the default, and presets and console count for nothing.
    Source read(const psString& name, const psString& prompt, const psString& defaultText,
                psString& value);
    // Whether read would put a question for the parameter.
    bool willAsk(const psString& name) const;

private:
    struct Preset {
        psString name, value;
        bool used = false;
    };
    bool findPreset(const psString& name, psString& value);
    bool isSetForAllTests(const psString& name) const;
    Source ask(const psString& name, const psString& prompt, const psString& defaultText,
               psString& value);
    bool typed(const psString& prompt, const psString& defaultText, psString& answer);

    Memory* m_memory = nullptr;
    FILE* m_console = nullptr;
    bool m_asking = false;
    psIniFile m_ini; // empty while none is open
    bool m_writing = false;
    psString m_section = commonSection;
    psNamedList<Preset, &Preset::name> m_presets;
};

extern psIStream g_istrm;

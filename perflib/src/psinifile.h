#pragma once

#include "psstring.h"

// A key of a section. The value "~~~" marks a key that stands alone on its line, without "=".
struct psValueItem {
    static constexpr const char* noValue = "~~~";

    psValueItem(const psString& key, const psString& value, const psString& comment)
        : m_key(key), m_value(value), m_comment(comment) {}

    psString m_key, m_value, m_comment;
};

// The keys of a section in the order of the file; owns its items. Names are compared exactly.
class psValues : public psList<psValueItem*> {
public:
    psValues() = default;
    psValues(const psValues&) = delete;
    psValues& operator=(const psValues&) = delete;
    ~psValues() override;

    bool exist(const psString& key) const { return find(key) != nullptr; }
    psValueItem* find(const psString& key) const; // null when absent
    // Replaces value and comment of the key, or adds it at the end.
    void set(const psString& key, const psString& value, const psString& comment);
    bool remove(const psString& key); // false when absent
};

struct psSectionItem {
    explicit psSectionItem(const psString& name) : m_name(name) {}

    psString m_name;
    psValues m_values;
};

// The sections in the order of the file; owns its items. Names are compared exactly.
class psSections : public psList<psSectionItem*> {
public:
    psSections() = default;
    psSections(const psSections&) = delete;
    psSections& operator=(const psSections&) = delete;
    ~psSections() override;

    bool exist(const psString& name) const { return find(name) != nullptr; }
    psSectionItem* find(const psString& name) const; // null when absent
    psSectionItem& findOrAdd(const psString& name);
    bool remove(const psString& name); // false when absent
    void removeAll();
};

// The settings file: sections of key=value lines with "//" comments, kept as a store that is
// written back whole when it was modified. Keys are trimmed before they are looked for.
class psIniFile {
public:
    psIniFile() = default;
    psIniFile(const psIniFile&) = delete;
    psIniFile& operator=(const psIniFile&) = delete;
    ~psIniFile(); // closes

    // Closes what was open and reads the file. False, with an empty store, when it cannot be
    // read; to write, a missing file is an empty one, and false (reported) also means that the
    // file cannot be replaced there.
    bool open(const psString& name, bool write);
    // Writes a modified store back, then empties it. False as updateFile.
    bool close();
    // Writes a modified store back. False (reported): not written, the old file stands.
    bool updateFile();
    const psString& name() const { return m_name; }
    bool isModified() const { return m_modified; }

    // defaultValue when there is no such section or key; "~~~" for a key that stands alone.
    psString read(const psString& section, const psString& key,
                  const psString& defaultValue = "") const;
    bool sectionExist(const psString& section) const;
    bool valueExist(const psString& section, const psString& key) const;

    // Add a section, a key that stands alone, a value. The value of an existing key is replaced.
    void write(const psString& section);
    void write(const psString& section, const psString& key);
    void write(const psString& section, const psString& key, const psString& value,
               const psString& comment = "");
    void eraseSection(const psString& section);
    void deleteKey(const psString& section, const psString& key);

private:
    bool readFile(bool report);
    psSectionItem* readLine(const psString& line, psSectionItem* section);
    const psValueItem* findValue(const psString& section, const psString& key) const;

    psString m_name;
    psSections m_sections;
    bool m_modified = false;
};

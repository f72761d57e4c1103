#pragma once

#include "psnamedlist.h"

// A key of a section. The value "~~~" marks a key that stands alone on its line, without "=".
struct psValueItem {
    static constexpr const char* noValue = "~~~";

    psValueItem(const psString& key, const psString& value, const psString& comment)
        : m_key(key), m_value(value), m_comment(comment) {}

    psString m_key, m_value, m_comment;
    bool m_declared = false; // something reads it, or could
};

// The keys of a section in the order of the file.
class psValues : public psNamedList<psValueItem, &psValueItem::m_key> {
public:
    // Replaces value and comment of the key, or adds it at the end.
    psValueItem& set(const psString& key, const psString& value, const psString& comment);
};

struct psSectionItem {
    explicit psSectionItem(const psString& name) : m_name(name) {}

    psString m_name;
    psValues m_values;
    bool m_read = false; // everything that it may hold has been declared
};

// The sections in the order of the file.
class psSections : public psNamedList<psSectionItem, &psSectionItem::m_name> {
public:
    psSectionItem& findOrAdd(const psString& name);
};

// The settings file: sections of key=value lines with "//" comments, kept as a store that is
// written back whole when it was modified. Keys are trimmed before they are looked for. Comments
// stay only where they stand behind a value.
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
    bool isOpen() const { return m_open; }
    bool isModified() const { return m_modified; }

    // defaultValue when there is no such section or key; "~~~" for a key that stands alone.
    psString read(const psString& section, const psString& key,
                  const psString& defaultValue = "") const;
    bool sectionExist(const psString& section) const;
    bool valueExist(const psString& section, const psString& key) const;
    psValueItem* find(const psString& section, const psString& key) const; // null when absent
    const psSections& sections() const { return m_sections; }
    // The keys before the first section, which belong to none.
    const psValues& strayValues() const { return m_strayValues; }

    // Add a section, a key that stands alone, a value. The value of an existing key is replaced.
    void write(const psString& section);
    void write(const psString& section, const psString& key);
    psValueItem& write(const psString& section, const psString& key, const psString& value,
                       const psString& comment = "");
    void eraseSection(const psString& section);
    void deleteKey(const psString& section, const psString& key);

private:
    bool readFile(bool report);
    psSectionItem* readLine(psString content, psSectionItem* section);
    void forget();

    psString m_name;
    psValues m_strayValues;
    psSections m_sections;
    bool m_open = false;
    bool m_modified = false;
};

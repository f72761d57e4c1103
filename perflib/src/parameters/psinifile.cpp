#include "psinifile.h"

#include <unistd.h>

#include "psostream.h"
#include "psatomicfile.h"

psValueItem& psValues::set(const psString& key, const psString& value, const psString& comment) {
    psValueItem* const item = find(key);
    if (!item) {
        return append(new psValueItem(key, value, comment));
    }
    item->m_value = value;
    item->m_comment = comment;
    return *item;
}

psSectionItem& psSections::findOrAdd(const psString& name) {
    psSectionItem* const section = find(name);
    return section ? *section : append(new psSectionItem(name));
}

psIniFile::~psIniFile() {
    close();
}

bool psIniFile::open(const psString& name, bool write) {
    close();
    m_name = name;
    if (write && !psAtomicFile::canReplace(name)) {
        psReportOpenFailure(name, PS_OPEN_WRITE);
        return false;
    }
    const bool isNew = write && access(name.c_str(), F_OK) != 0;
    m_open = isNew || readFile(write);
    return m_open;
}

// A carriage return ends a line, too: files come from many systems, and what follows a section
// header on its line is dropped. A zero byte would hide the rest.
static psStringList linesIn(psString text) {
    for (int i = 0; i < text.length(); ++i) {
        text.at(i) = text[i] ? text[i] : ' ';
    }
    psStringList lines;
    text.parse(lines, "\r");
    return lines;
}

bool psIniFile::readFile(bool report) {
    i_stream in(m_name, PS_OPEN_READ, report);
    psSectionItem* section = nullptr;
    psString text;
    while (in.getline(text)) {
        for (const psString& line : linesIn(text)) {
            section = readLine(line, section);
        }
    }
    // Half of a file must not pass for the whole, as writing it back would lose the rest.
    if (in.failed()) {
        forget();
    }
    return !in.failed();
}

void psIniFile::forget() {
    m_strayValues.removeAll();
    m_sections.removeAll();
}

// What cannot stand inside a line becomes a blank: a line end in a name, a value or a comment
// would make another line of its rest, a zero byte would hide it.
static psString onOneLine(psString text) {
    for (int i = 0; i < text.length(); ++i) {
        if (text[i] == '\n' || text[i] == '\r' || text[i] == '\0') {
            text.at(i) = ' ';
        }
    }
    return text;
}

// Takes the comment, and the sign in front of it, off the line.
static psString cutComment(psString& line) {
    const int sign = line.find("//");
    if (sign == psString::npos) {
        return {};
    }
    const psString comment = line.substr(sign + 2).trimmed();
    line = line.substr(0, sign);
    return comment;
}

static void readValue(psValues& values, const psString& content, const psString& comment) {
    const int sign = content.find("=");
    if (sign == psString::npos) {
        values.set(content, psValueItem::noValue, "");
    } else {
        values.set(content.substr(0, sign).trimmed(), content.substr(sign + 1).trimmed(), comment);
    }
}

// Returns the section of the line after this one.
psSectionItem* psIniFile::readLine(psString content, psSectionItem* section) {
    const psString comment = cutComment(content);
    content.trim();
    if (content.empty()) {
        return section;
    }
    const int begin = content.find("[");
    const int end = begin == psString::npos ? begin : content.find("]", begin);
    if (end != psString::npos) {
        return &m_sections.findOrAdd(content.substr(begin + 1, end - begin - 1).trimmed());
    }
    readValue(section ? section->m_values : m_strayValues, content, comment);
    return section;
}

bool psIniFile::close() {
    const bool written = updateFile();
    forget();
    m_open = false;
    m_modified = false;
    return written;
}

static void writeValues(psAtomicFile& file, const psValues& values) {
    for (const psValueItem* item : values) {
        psString line = onOneLine(item->m_key);
        if (!(item->m_value == psValueItem::noValue)) {
            line << "=" << onOneLine(item->m_value);
            if (!item->m_comment.empty()) {
                line << "\t// " << onOneLine(item->m_comment);
            }
        }
        file.write(line << "\n");
    }
}

// A byte order mark. A key begins with one where something stood in front of it in the file.
static constexpr const char* mark = "\xEF\xBB\xBF";

bool psIniFile::updateFile() {
    if (!m_modified) {
        return true;
    }
    if (m_name.empty()) {
        return false;
    }
    psAtomicFile file(m_name);
    if (!m_strayValues.empty() && onOneLine(m_strayValues.front()->m_key).startsWith(mark)) {
        file.write(mark); // the one that reading takes off
    }
    writeValues(file, m_strayValues);
    for (const psSectionItem* section : m_sections) {
        file.write("\n[" + onOneLine(section->m_name) + "]\n");
        writeValues(file, section->m_values);
    }
    m_modified = !file.commit();
    if (m_modified) {
        g_ostrm << PS_ERR << psCantWriteText(m_name, file.failure()) << PS_END_FLUSH;
    }
    return !m_modified;
}

psValueItem* psIniFile::find(const psString& section, const psString& key) const {
    const psSectionItem* const found = m_sections.find(section);
    return found ? found->m_values.find(key.trimmed()) : nullptr;
}

psString psIniFile::read(const psString& section, const psString& key,
                         const psString& defaultValue) const {
    const psValueItem* const item = find(section, key);
    return item ? item->m_value : defaultValue;
}

bool psIniFile::sectionExist(const psString& section) const {
    return m_sections.exist(section);
}

bool psIniFile::valueExist(const psString& section, const psString& key) const {
    return find(section, key) != nullptr;
}

void psIniFile::write(const psString& section) {
    m_sections.findOrAdd(section);
    m_modified = true;
}

void psIniFile::write(const psString& section, const psString& key) {
    write(section, key, psValueItem::noValue);
}

psValueItem& psIniFile::write(const psString& section, const psString& key, const psString& value,
                              const psString& comment) {
    m_modified = true;
    return m_sections.findOrAdd(section).m_values.set(key.trimmed(), value, comment);
}

void psIniFile::eraseSection(const psString& section) {
    if (m_sections.remove(section)) {
        m_modified = true;
    }
}

void psIniFile::deleteKey(const psString& section, const psString& key) {
    psSectionItem* const found = m_sections.find(section);
    if (found && found->m_values.remove(key.trimmed())) {
        m_modified = true;
    }
}

#include "psinifile.h"

#include <unistd.h>

#include "psostream.h"
#include "psreplace.h"

psValues::~psValues() {
    for (const psValueItem* item : *this) {
        delete item;
    }
}

psValueItem* psValues::find(const psString& key) const {
    for (psValueItem* item : *this) {
        if (item->m_key == key) {
            return item;
        }
    }
    return nullptr;
}

void psValues::set(const psString& key, const psString& value, const psString& comment) {
    if (psValueItem* const item = find(key)) {
        *item = psValueItem(key, value, comment);
    } else {
        append(new psValueItem(key, value, comment));
    }
}

bool psValues::remove(const psString& key) {
    for (auto item = begin(); item != end(); ++item) {
        if ((*item)->m_key == key) {
            delete *item;
            erase(item);
            return true;
        }
    }
    return false;
}

psSections::~psSections() {
    removeAll();
}

psSectionItem* psSections::find(const psString& name) const {
    for (psSectionItem* section : *this) {
        if (section->m_name == name) {
            return section;
        }
    }
    return nullptr;
}

psSectionItem& psSections::findOrAdd(const psString& name) {
    if (psSectionItem* const section = find(name)) {
        return *section;
    }
    append(new psSectionItem(name));
    return *back();
}

bool psSections::remove(const psString& name) {
    for (auto section = begin(); section != end(); ++section) {
        if ((*section)->m_name == name) {
            delete *section;
            erase(section);
            return true;
        }
    }
    return false;
}

void psSections::removeAll() {
    for (const psSectionItem* section : *this) {
        delete section;
    }
    clear();
}

psIniFile::~psIniFile() {
    close();
}

bool psIniFile::open(const psString& name, bool write) {
    close();
    m_name = name;
    if (write && !psReplacement::isPossible(name)) {
        psReportOpenFailure(name, PS_OPEN_WRITE);
        return false;
    }
    const bool isNew = write && access(name.c_str(), F_OK) != 0;
    return isNew || readFile(write);
}

bool psIniFile::readFile(bool report) {
    i_stream in(m_name, PS_OPEN_READ, report);
    psSectionItem* section = nullptr;
    psString line;
    while (in.getline(line)) {
        section = readLine(line, section);
    }
    // Half of a file must not pass for the whole, as writing it back would lose the rest.
    if (in.failed()) {
        m_sections.removeAll();
    }
    return !in.failed();
}

// A line without its comment and, where the file comes from a system that ends its lines so,
// without the carriage return.
static psString contentOf(const psString& line) {
    int end = line.find("//");
    if (end == psString::npos) {
        end = line.length();
    }
    while (end > 0 && line[end - 1] == '\r') {
        end--;
    }
    return line.substr(0, end).trimmed();
}

// Returns the section of the line after this one.
psSectionItem* psIniFile::readLine(const psString& line, psSectionItem* section) {
    const psString content = contentOf(line);
    if (content.empty()) {
        return section;
    }
    const int begin = content.find("[");
    const int end = begin == psString::npos ? begin : content.find("]", begin);
    if (end != psString::npos) {
        return &m_sections.findOrAdd(content.substr(begin + 1, end - begin - 1).trimmed());
    }
    const int sign = content.find("=");
    if (section && sign == psString::npos) {
        section->m_values.set(content, psValueItem::noValue, "");
    } else if (section) { // values before the first section belong to none
        section->m_values.set(content.substr(0, sign).trimmed(), content.substr(sign + 1).trimmed(),
                              "");
    }
    return section;
}

bool psIniFile::close() {
    const bool written = updateFile();
    m_sections.removeAll();
    m_modified = false;
    return written;
}

// A line end inside a name, a value or a comment would make another line of its rest.
static psString onOneLine(psString text) {
    for (int i = 0; i < text.length(); ++i) {
        if (text[i] == '\n' || text[i] == '\r') {
            text.at(i) = ' ';
        }
    }
    return text;
}

static psString lineOf(const psValueItem& item) {
    psString line = onOneLine(item.m_key);
    if (!(item.m_value == psValueItem::noValue)) {
        line << "=" << onOneLine(item.m_value);
        if (!item.m_comment.empty()) {
            line << "\t// " << onOneLine(item.m_comment);
        }
    }
    return line << "\n";
}

bool psIniFile::updateFile() {
    if (!m_modified) {
        return true;
    }
    if (m_name.empty()) {
        return false;
    }
    psReplacement file(m_name);
    for (const psSectionItem* section : m_sections) {
        file.write("\n[" + onOneLine(section->m_name) + "]\n");
        for (const psValueItem* item : section->m_values) {
            file.write(lineOf(*item));
        }
    }
    m_modified = !file.commit();
    if (m_modified) {
        g_ostrm << PS_ERR << psCantWriteText(m_name, file.failure()) << PS_END_FLUSH;
    }
    return !m_modified;
}

const psValueItem* psIniFile::findValue(const psString& section, const psString& key) const {
    const psSectionItem* const found = m_sections.find(section);
    return found ? found->m_values.find(key.trimmed()) : nullptr;
}

psString psIniFile::read(const psString& section, const psString& key,
                         const psString& defaultValue) const {
    const psValueItem* const item = findValue(section, key);
    return item ? item->m_value : defaultValue;
}

bool psIniFile::sectionExist(const psString& section) const {
    return m_sections.exist(section);
}

bool psIniFile::valueExist(const psString& section, const psString& key) const {
    return findValue(section, key) != nullptr;
}

void psIniFile::write(const psString& section) {
    m_sections.findOrAdd(section);
    m_modified = true;
}

void psIniFile::write(const psString& section, const psString& key) {
    write(section, key, psValueItem::noValue);
}

void psIniFile::write(const psString& section, const psString& key, const psString& value,
                      const psString& comment) {
    m_sections.findOrAdd(section).m_values.set(key.trimmed(), value, comment);
    m_modified = true;
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

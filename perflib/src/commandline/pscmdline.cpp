#include "pscmdline.h"

#include <cstring>

#include "psstream.h"

bool psCommandKey::isKeyWord(const psString& word) {
    return word.length() >= 2 && (word[0] == '-' || word[0] == '/');
}

static bool isModifier(char c) {
    return c == '+' || c == '-' || c == '=';
}

bool psCommandKey::setArg(const psString& word, const psString& next) {
    if (!isKeyWord(word)) {
        return false;
    }
    m_key = word[1];
    m_arg = word.substr(2);
    if (m_arg.empty() || (m_arg.length() == 1 && isModifier(m_arg[0]))) {
        m_arg += next;
    }
    return true;
}

bool psCommandKey::getArg(char key, psString& arg) const {
    if (key != m_key) {
        return false;
    }
    arg = m_arg;
    return true;
}

psCommandList::psCommandList() {
    append(psCommandKey());
}

void psCommandList::setArgs(int argc, const char* const* argv) {
    psStringList words;
    for (int i = 0; i < argc; ++i) {
        words.append(argv[i]);
    }
    insertArgs(words, end());
}

void psCommandList::setArgs(const char* text) {
    insertArgs(psString(text), end());
}

void psCommandList::setArg(char key, const psString& value) {
    insertArg(psString("-") + psString(key), value, end());
}

void psCommandList::insertArgs(const psString& text, iterator position) {
    psStringList words;
    text.parse(words, " \";\t\r\n");
    insertArgs(words, position);
}

void psCommandList::insertArgs(const psStringList& words, iterator position) {
    for (auto word = words.begin(); word != words.end();) {
        const psString& current = *word++;
        psString next;
        if (word != words.end() && !psCommandKey::isKeyWord(*word)) {
            next = *word++;
        }
        insertArg(current, next, position);
    }
}

bool psCommandList::insertArg(const psString& word, const psString& next, iterator position) {
    psCommandKey entry;
    if (!entry.setArg(word, next)) {
        return false;
    }
    insert(position, entry);
    return true;
}

// The lines with a blank after each. The length is known before the text is made, since a file
// of many lines would be copied over and over if it grew line by line.
static psString joinLines(const psStringList& lines) {
    int length = 0;
    for (const psString& line : lines) {
        length += line.length() + 1;
    }
    psString text;
    text.resize(length, ' ');
    int position = 0;
    for (const psString& line : lines) {
        for (int i = 0; i < line.length(); ++i) {
            text.at(position + i) = line[i] ? line[i] : ' '; // a zero byte would hide the rest
        }
        position += line.length() + 1;
    }
    return text;
}

bool psCommandList::insertFromFile(const psString& file, iterator position) {
    i_stream in(file);
    psStringList lines;
    psString line;
    while (in.getline(line)) {
        lines.append(line);
    }
    if (in.failed()) {
        if (in.isOpen()) { // a file that did not open has been reported
            psReportOpenFailure(file, PS_OPEN_READ);
        }
        return false;
    }
    insertArgs(joinLines(lines), position);
    return true;
}

bool psCommandList::expandFiles() {
    bool complete = true;
    for (auto entry = begin(); entry != end();) {
        psString file;
        if (!entry->getArg('@', file)) {
            ++entry;
            continue;
        }
        entry = erase(entry);
        complete &= insertFromFile(file, entry);
    }
    return complete;
}

bool psCommandList::isKey(char key) const {
    psString arg;
    return getArg(key, arg);
}

bool psCommandList::getArg(char key, psString& arg) const {
    for (const psCommandKey& entry : *this) {
        if (entry.getArg(key, arg)) {
            return true;
        }
    }
    return false;
}

// The file's first bytes up to the line end.
static psString firstLine(i_stream& in) {
    char buffer[1024] = {};
    in.read(buffer, sizeof buffer - 1);
    buffer[strcspn(buffer, "\n")] = '\0';
    return buffer;
}

bool psReadCfgFile(const psString& programPath, psString& text, psString& file) {
    const psString name = programPath.getFileTitle() + ".cfg";
    for (const psString& directory : {psString(), programPath.getFileDir()}) {
        file = directory + name;
        i_stream in(file, PS_OPEN_READ, false);
        if (in.isOpen()) {
            text = firstLine(in);
            return true;
        }
    }
    return false;
}

#include "psstream.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include "psfileopen.h"
#include "psostream.h"

psString psOpenModeText(int mode) {
    psString text = "r";
    if (mode & PS_OPEN_WRITE) {
        text = mode & PS_OPEN_APPEND ? "a" : "w";
    }
    if (mode & PS_OPEN_BINARY) {
        text += 'b';
    }
    return text;
}

// A directory opens for reading, only every read of it fails.
static bool isDirectory(FILE* file) {
    struct stat status;
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

namespace {
struct OpenFile {
    unsigned number;
    FILE* file;
};
constinit unsigned g_nextFileNumber = 0;

// Never destroyed: streams that live until the end of the process close their files after it.
psList<OpenFile>& openFiles() {
    static auto& files = *new psList<OpenFile>;
    return files;
}

// False: the file has been closed already.
bool forgetFile(const FILE* file) {
    for (auto i = openFiles().begin(); i != openFiles().end(); ++i) {
        if (i->file == file) {
            openFiles().erase(i);
            return true;
        }
    }
    return false;
}
} // namespace

unsigned psOpenFileMark() {
    return g_nextFileNumber;
}

void psCloseFilesSince(unsigned mark) {
    for (auto i = openFiles().begin(); i != openFiles().end();) {
        if (i->number < mark) {
            ++i;
            continue;
        }
        fclose(i->file);
        i = openFiles().erase(i);
    }
}

static FILE* openFile(const psString& name, int mode, psString& reason) {
    if (name.empty()) {
        return nullptr;
    }
    FILE* const file = psOpenFile(name, mode, reason);
    if (file && isDirectory(file)) {
        fclose(file);
        return nullptr;
    }
    if (file) {
        openFiles().append({g_nextFileNumber++, file});
    }
    return file;
}

bool psIsMissing(const psString& name) {
    return access(name.c_str(), F_OK) != 0 && errno == ENOENT;
}

void psReportOpenFailure(const psString& name, int mode, const psString& reason) {
    g_ostrm << PS_ERR;
    if (name.empty()) {
        g_ostrm << "-- Can't open file. Wrong filename (NULL) ";
    } else {
        g_ostrm << "-- Can't open file " << name;
    }
    g_ostrm << (mode & PS_OPEN_WRITE ? " to write" : " to read")
            << (reason.empty() ? reason : ": " + reason) << "\n"
            << PS_END_FLUSH;
}

io_stream::io_stream(const psString& name, int mode, bool report)
    : m_mode(mode | PS_OPEN_FILE), m_name(name) {
    psString reason;
    m_file = openFile(name, mode, reason);
    if (!m_file && report) {
        psReportOpenFailure(name, mode, reason);
    }
}

io_stream::~io_stream() {
    close();
}

void io_stream::close() {
    if (m_file && forgetFile(m_file)) {
        fclose(m_file);
    }
    m_file = nullptr;
}

int io_stream::descriptor() const {
    return m_file ? fileno(m_file) : -1;
}

i_stream::i_stream(const psString& name, int mode, bool report)
    : io_stream(name, mode | PS_OPEN_READ, report) {}

bool i_stream::getline(psString& line) {
    char* text = nullptr;
    size_t room = 0;
    const ssize_t length = m_file ? ::getline(&text, &room, m_file) : -1;
    if (length >= 0) {
        const bool ended = length > 0 && text[length - 1] == '\n';
        const int mark = m_isBegun || strncmp(text, "\xEF\xBB\xBF", 3) != 0 ? 0 : 3;
        line = psString(text + mark, static_cast<int>(ended ? length - 1 : length) - mark);
        m_isBegun = true;
    }
    free(text);
    return length >= 0;
}

int i_stream::read(void* buffer, int length) {
    if (!m_file || length <= 0) {
        return 0;
    }
    return static_cast<int>(fread(buffer, 1, static_cast<size_t>(length), m_file));
}

bool i_stream::failed() const {
    return !m_file || ferror(m_file) != 0;
}

bool i_stream::isWrittenHere() const {
    struct stat own;
    if (!m_file || fstat(fileno(m_file), &own) != 0 || !S_ISREG(own.st_mode)) {
        return false;
    }
    for (const OpenFile& open : openFiles()) {
        struct stat other;
        const bool isSame = fstat(fileno(open.file), &other) == 0 && other.st_dev == own.st_dev &&
                            other.st_ino == own.st_ino;
        if (isSame && (fcntl(fileno(open.file), F_GETFL) & O_ACCMODE) != O_RDONLY) {
            return true;
        }
    }
    return false;
}

o_stream::o_stream(const psString& name, int mode, bool report)
    : io_stream(name, mode | PS_OPEN_WRITE, report) {}

FILE* o_stream::target() const {
    if (m_failure) {
        return nullptr;
    }
    return m_file || isNamedFile() ? m_file : stdout;
}

// What the file still buffers is dropped: a library that keeps it would put the end of a lost
// text into the file when it is closed.
bool o_stream::fail() {
    FILE* const file = target();
    m_failure = errno ? errno : EIO;
    __fpurge(file);
    return false;
}

bool o_stream::write(const psString& text) {
    FILE* const file = target();
    if (!file) {
        return true;
    }
    clearerr(file); // standard output may carry the failure of another stream
    fwrite(text.c_str(), 1, static_cast<size_t>(text.length()), file);
    // Not the count: it is full also when the flush of a line-buffered file failed.
    return !ferror(file) || fail();
}

bool o_stream::flush() {
    FILE* const file = target();
    return !file || fflush(file) == 0 || fail();
}

// With one call where the file takes all of it: a process that is killed has written the text or
// has not.
static bool writeAtOnce(int file, const psString& text) {
    const char* begin = text.c_str();
    const char* const end = begin + text.length();
    while (begin < end) {
        const ssize_t written = ::write(file, begin, static_cast<size_t>(end - begin));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        begin += written > 0 ? written : 0;
    }
    return true;
}

bool o_stream::writeWhole(const psString& text) {
    FILE* const file = target();
    if (!file) {
        return true;
    }
    if (!flush()) {
        return false;
    }
    struct stat before;
    const bool canCut = fstat(fileno(file), &before) == 0 && S_ISREG(before.st_mode);
    const bool whole = writeAtOnce(fileno(file), text) || fail();
    if (!whole && canCut && ftruncate(fileno(file), before.st_size) != 0) {
        m_failure = errno; // worse than the first reason: a torn line stays
    }
    // Another stream may go on writing to the same standard output, behind the cut.
    if (!whole && canCut) {
        lseek(fileno(file), 0, SEEK_END);
    }
    return whole;
}

o_stream* createOStream(const psString& name, bool append) {
    const int mode = PS_OPEN_WRITE | PS_OPEN_FILE | (append ? PS_OPEN_APPEND : 0);
    o_stream* const stream = new o_stream(name, mode);
    if (stream->isOpen()) {
        return stream;
    }
    delete stream;
    return nullptr;
}

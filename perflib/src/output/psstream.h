#pragma once

#include <cstdio>

#include "psstring.h"

// Open modes of io_stream, combined by OR.
enum psOpenMode : int {
    PS_OPEN_READ = 1,
    PS_OPEN_WRITE = 2,
    PS_OPEN_APPEND = 4, // with PS_OPEN_WRITE
    PS_OPEN_BINARY = 8,
    PS_OPEN_FILE = 0x100, // a named file, not the console
};

// The C mode text ("r", "w", "a", with "b" for binary).
psString psOpenModeText(int mode);

// Whether there is no file of that name; false also for one that only cannot be reached.
bool psIsMissing(const psString& name);

// Reports as an error that the file cannot be opened, to write or to read as mode says, and why
// where a reason is given.
void psReportOpenFailure(const psString& name, int mode, const psString& reason = {});

// Wrapper of a C file. A file that cannot be opened (a directory counts as one) is reported to
// g_ostrm with its name, when report is set; the stream then has no file. Owns and closes its
// file. A stream that is given a name is a named file, whatever its mode says.
class io_stream {
public:
    io_stream() = default; // stands for the console
    io_stream(const psString& name, int mode, bool report = true);
    io_stream(const io_stream&) = delete;
    io_stream& operator=(const io_stream&) = delete;
    virtual ~io_stream();

    const psString& name() const { return m_name; }
    bool isOpen() const { return m_file != nullptr; }
    bool isNamedFile() const { return (m_mode & PS_OPEN_FILE) != 0; }
    void close();
    int descriptor() const; // -1: no file

protected:
    FILE* m_file = nullptr;
    int m_mode = 0;

private:
    psString m_name;
};

// A fault that jumps out of a test's code leaves its streams behind without destroying them. The
// files opened since the mark are closed then; a stream that outlived the jump must not be used
// any more.
unsigned psOpenFileMark();
void psCloseFilesSince(unsigned mark);

class i_stream : public io_stream {
public:
    explicit i_stream(const psString& name, int mode = PS_OPEN_READ, bool report = true);
    // The next line without its line end, of any length, any bytes in it kept (a carriage
    // return too), but for a byte order mark in front of the first; false at the end of the file,
    // with line untouched.
    bool getline(psString& line);
    // Bytes read into buffer, at most length; 0 when nothing could be read.
    int read(void* buffer, int length);
    // Whether there is no file or a read of it failed, so that the end came too early.
    bool failed() const;
    // Whether this program has the same regular file open to write.
    bool isWrittenHere() const;

private:
    bool m_isBegun = false; // a line has been read
};

// Writes to its file, or to standard output when it stands for the console; writes to a named
// file that did not open are dropped. A write that fails (full disk, closed console) stops the
// stream: later writes are dropped and failure() has the reason, so that the owner can report
// it elsewhere.
class o_stream : public io_stream {
public:
    o_stream() = default;
    explicit o_stream(const psString& name, int mode = PS_OPEN_WRITE | PS_OPEN_FILE,
                      bool report = true);
    // False when this write made the stream fail.
    bool write(const psString& text);
    // As write and flush, but all or nothing: what a failed write left in a regular file is cut
    // off again. Used for table lines.
    bool writeWhole(const psString& text);
    bool flush();
    // errno of the write that stopped the stream, 0 while all is well.
    int failure() const { return m_failure; }

private:
    FILE* target() const; // null: drop
    bool fail();
    int m_failure = 0;
};

// A new o_stream on the named file, owned by the caller; null (and reported) when it cannot be
// opened.
o_stream* createOStream(const psString& name, bool append);

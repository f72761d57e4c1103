#include "psostream.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "psinit.h"
#include "pslastwords.h"

PS_INIT_FIRST psOStream g_ostrm;

// The first file opened would get the number of a standard file that was closed before the start,
// and console output would go into a log or a table. Opened in the wrong direction, the stand-in
// still fails as a closed file does.
static void occupyClosedStandardFiles() {
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (fcntl(file, F_GETFD) != -1) {
            continue;
        }
        const int opened = open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        if (opened != file && opened >= 0) {
            close(opened);
        }
    }
}

// A closed pipe and a file at its size limit must come back as a failed write, not as the end of
// the program with all its results.
static void ignoreWriteSignals() {
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
}

psString psCantWriteText(const psString& file, int reason) {
    const psString target = file.empty() ? psString("console") : "file " + file;
    return "-- Can't write to " + target + ": " + strerror(reason) + "\n";
}

psOStream::~psOStream() {
    close();
}

void psOStream::addConsole() {
    for (const o_stream* stream : m_streams) {
        if (!stream->isNamedFile()) {
            return;
        }
    }
    occupyClosedStandardFiles();
    ignoreWriteSignals();
    // Every line appears when it is written, also through a pipe: the reader of the console sees
    // what goes on, and nothing is lost when a measured function brings the program down.
    setvbuf(stdout, nullptr, _IOLBF, 0);
    m_streams.insert(m_streams.begin(), new o_stream);
}

bool psOStream::addStream(const psString& name, bool append) {
    o_stream* const stream = createOStream(name, append);
    if (stream) {
        addStream(stream);
    }
    return stream != nullptr;
}

// Earlier failures are repeated on the new stream: when the console is gone from the start, there
// was no other stream to report it on.
void psOStream::addStream(o_stream* stream) {
    bool works = true;
    for (const o_stream* other : m_streams) {
        if (other->failure() && accepts(PS_ERR)) {
            works &= stream->write(psCantWriteText(other->name(), other->failure()));
        }
    }
    m_streams.append(stream);
    if (stream->isOpen()) {
        psAddLastWordsFile(stream->descriptor());
    }
    if (!works) {
        reportFailure(*stream);
    }
}

void psOStream::close() {
    flush();
    for (o_stream* stream : m_streams) {
        if (stream->isOpen()) {
            psRemoveLastWordsFile(stream->descriptor());
        }
        delete stream;
    }
    m_streams.clear();
}

void psOStream::setMsgLevel(MessageLevel level) {
    m_levels.append(static_cast<MessageLevel>(m_msgLevel));
    m_msgLevel = level;
}

void psOStream::restoreMsgLevel() {
    if (m_levels.empty()) {
        m_msgLevel = PS_ERR;
        return;
    }
    m_msgLevel = m_levels.back();
    m_levels.removeBack();
}

void psOStream::unwindLevels(int depth) {
    while (levelDepth() > depth) {
        restoreMsgLevel();
    }
}

bool psOStream::beginMessage(MessageLevel level) {
    if (level > m_outLevel) {
        return false;
    }
    setMsgLevel(level);
    return true;
}

void psOStream::write(const psString& text) {
    writeTo(text, toBoth);
}

void psOStream::writeToLogs(const psString& text) {
    writeTo(text, toLogs);
}

void psOStream::writeToConsole(const psString& text) {
    writeTo(text, toConsole);
}

void psOStream::writeTo(const psString& text, Side side) {
    if ((m_msgLevel & m_outLevel) == 0 || text.empty()) {
        return;
    }
    if (m_faults && side != toConsole && (m_msgLevel & (PS_ERR | PS_WARN)) != 0) {
        *m_faults << text;
    }
    if (m_holding) {
        m_held.append({text, side});
        return;
    }
    distribute(text, side);
}

void psOStream::distribute(const psString& text, Side side) {
    m_midLine = text[text.length() - 1] != '\n';
    psList<const o_stream*> failed;
    for (o_stream* stream : m_streams) {
        const bool wanted = side == toBoth || stream->isNamedFile() == (side == toLogs);
        if (wanted && !stream->write(text)) {
            failed.append(stream);
        }
    }
    reportFailures(failed);
}

void psOStream::release(bool show) {
    m_holding = false;
    for (const Held& held : m_held) {
        if (show) {
            distribute(held.text, held.side);
        }
    }
    m_held.clear();
}

void psOStream::flush() {
    psList<const o_stream*> failed;
    for (o_stream* stream : m_streams) {
        if (!stream->flush()) {
            failed.append(stream);
        }
    }
    reportFailures(failed);
}

void psOStream::reportFailure(const o_stream& failed) {
    psList<const o_stream*> list;
    list.append(&failed);
    reportFailures(list);
}

// A stream that fails while another one's failure is written to it joins the list being walked.
// Every stream fails once at most, so the walk ends.
void psOStream::reportFailures(psList<const o_stream*>& failed) {
    if (!accepts(PS_ERR)) {
        return;
    }
    for (const o_stream* culprit : failed) {
        const psString text =
            (m_midLine ? "\n" : "") + psCantWriteText(culprit->name(), culprit->failure());
        m_midLine = false;
        for (o_stream* stream : m_streams) {
            if (!stream->write(text) || !stream->flush()) {
                failed.append(stream);
            }
        }
    }
}

psOStream& operator<<(psOStream& out, const char* text) {
    return out << psString(text);
}

psOStream& operator<<(psOStream& out, const psString& text) {
    out.write(text);
    return out;
}

psOStream& operator<<(psOStream& out, MessageLevel level) {
    if (level != PS_END && level != PS_END_FLUSH) {
        out.setMsgLevel(level);
        return out;
    }
    out.restoreMsgLevel();
    if (level == PS_END_FLUSH) {
        out.flush();
    }
    return out;
}

psOStream& operator<<(psOStream& out, int value) {
    return out << psText(value);
}

psOStream& operator<<(psOStream& out, long long value) {
    return out << psText(value);
}

psOStream& operator<<(psOStream& out, double value) {
    return out << psText(value);
}

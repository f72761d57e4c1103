#pragma once

#include "psstream.h"

// Kinds of messages (bits), and two commands that end a message.
enum MessageLevel : int {
    PS_ERR = 1,
    PS_WARN = 2,
    PS_NORMAL = 4,
    PS_DETAIL = 8, // the step-by-step timing log
    PS_TRACE = 32, // the lifecycle labels
    PS_DATA = 64,
    PS_END = -10,       // ends the message
    PS_END_FLUSH = -11, // ends the message and flushes every file
};

// What the user wants to see: a sum of MessageLevel bits. The names of option "-L".
enum OutputLevel : int {
    PS_OUT_ERR = 1,
    PS_OUT_WARN = 3,
    PS_OUT_PERF = 7,
    PS_OUT_INFO = 15,
    PS_OUT_TRACE = 39,
    PS_OUT_DATA = 71,
};

// The text stream: fans every message out to the console and the log files and filters it by its
// kind. A message is: kind, text pieces, PS_END (or PS_END_FLUSH). Owns its streams. A stream that
// cannot be written any more is named once on the streams that are left, and on those added later.
class psOStream {
public:
    psOStream() = default;
    psOStream(const psOStream&) = delete;
    psOStream& operator=(const psOStream&) = delete;
    ~psOStream();

    // Adds the console (standard output, written line by line) as the first stream; a second call
    // does nothing. From then on the process ignores SIGPIPE and SIGXFSZ: a write that fails is
    // reported here instead.
    void addConsole();
    // Adds a log file; false (and reported, and nothing added) when it cannot be opened.
    bool addStream(const psString& name, bool append);
    void addStream(o_stream* stream); // takes ownership
    void flush();
    void close(); // closes and removes every stream

    int outLevel() const { return m_outLevel; }
    int msgLevel() const { return m_msgLevel; }
    void setOutLevel(int level) { m_outLevel = level; }
    void setMsgLevel(MessageLevel level); // push and set
    void restoreMsgLevel();               // pop; PS_ERR when the stack is empty
    // The messages that are open, and the way back to so many of them: an exception may leave a
    // message in the middle.
    int levelDepth() const { return m_levels.count(); }
    void unwindLevels(int depth);
    bool accepts(MessageLevel kind) const { return (kind & m_outLevel) != 0; }

    // False and no change when level > outLevel; otherwise the message is begun and must be ended.
    // Levels are compared as numbers here, while the writing operators test bits: true does not
    // promise that the text is written.
    bool beginMessage(MessageLevel level);
    void endMessage() { restoreMsgLevel(); }

    void write(const psString& text); // when the current kind is wanted
    // Likewise, but to one side only: text for the log files, or as it fits the console.
    void writeToLogs(const psString& text);
    void writeToConsole(const psString& text);
    // While text is not null, what the log gets as an error or a warning is added to it, too.
    void copyFaultsTo(psString* text) { m_faults = text; }
    int streamCount() const { return m_streams.count(); }
    // What is written from now on is held back, until it is shown or dropped.
    void hold() { m_holding = true; }
    void release(bool show);

    // Says, as an error, that failed (of this or another owner) can no longer be written.
    void reportFailure(const o_stream& failed);

private:
    enum Side { toBoth, toConsole, toLogs };
    void writeTo(const psString& text, Side side);
    void distribute(const psString& text, Side side);
    void reportFailures(psList<const o_stream*>& failed);

    struct Held {
        psString text;
        Side side;
    };
    psString* m_faults = nullptr;
    bool m_holding = false;
    psList<Held> m_held;
    psList<o_stream*> m_streams;
    bool m_midLine = false; // the last text had no line end
    int m_outLevel = PS_ERR;
    int m_msgLevel = PS_NORMAL;
    psList<MessageLevel> m_levels;
};

psOStream& operator<<(psOStream& out, const char* text);
psOStream& operator<<(psOStream& out, const psString& text);
psOStream& operator<<(psOStream& out, MessageLevel level);
// Numbers as psString writes them.
psOStream& operator<<(psOStream& out, int value);
psOStream& operator<<(psOStream& out, long long value);
psOStream& operator<<(psOStream& out, double value);

// "-- Can't write to file <file>: <reason>\n" ("console" when file is empty); reason is an errno.
psString psCantWriteText(const psString& file, int reason);

extern psOStream g_ostrm;

#include "psfileopen.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <iterator>

#include "psstream.h"

namespace {

// A file descriptor until it is handed on.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    FILE* toFile(int mode) {
        FILE* const file = isOpen() ? fdopen(m_number, psOpenModeText(mode).c_str()) : nullptr;
        m_number = file ? -1 : m_number;
        return file;
    }

private:
    int m_number;
};

int openFlags(int mode) {
    const int flags = mode & PS_OPEN_WRITE ? O_WRONLY | O_CREAT | O_APPEND : O_RDONLY;
    return flags | O_CLOEXEC;
}

Descriptor opened(const psString& name, int flags) {
    constexpr mode_t lessUmask = 0666;
    return Descriptor(open(name.c_str(), flags, lessUmask));
}

// ---- Named pipes ------------------------------------------------------------------------------

// One that a program was started with ("/dev/stdin") never waits for its other end.
bool isNamedPipe(const psString& name) {
    struct stat file;
    struct statfs system;
    return stat(name.c_str(), &file) == 0 && S_ISFIFO(file.st_mode) &&
           statfs(name.c_str(), &system) == 0 && system.f_type != PIPEFS_MAGIC;
}

// Duplicates a byte of the pipe without taking it: gives 0 only where nobody can write any.
bool hasWriter(int pipe) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return true;
    }
    const Descriptor reader(ends[0]);
    const Descriptor writer(ends[1]);
    return tee(pipe, writer.number(), 1, SPLICE_F_NONBLOCK) != 0;
}

FILE* openNamedPipe(const psString& name, int mode, psString& reason) {
    const bool isWritten = (mode & PS_OPEN_WRITE) != 0;
    Descriptor pipe = opened(name, openFlags(mode) | O_NONBLOCK);
    if (!pipe.isOpen() || (!isWritten && !hasWriter(pipe.number()))) {
        reason = psString("nobody ") + (isWritten ? "reads" : "writes to") + " this pipe";
        return nullptr;
    }
    fcntl(pipe.number(), F_SETFL, fcntl(pipe.number(), F_GETFL) & ~O_NONBLOCK);
    return pipe.toFile(mode);
}

// ---- Locks ------------------------------------------------------------------------------------

// The holder in a line "1: FLOCK  ADVISORY  WRITE 4711 08:01:131 0 EOF" of the kernel's list; 0
// when the line is of another file. Device numbers are not compared where they are not the file's:
// layered file systems show others.
pid_t holderIn(const psString& line, const struct stat& file, bool withDevice) {
    psStringList words;
    line.parse(words, " ");
    if (words.count() < 6 || !line.contains("FLOCK") || line.contains("->")) {
        return 0;
    }
    auto word = std::next(words.begin(), 4);
    const int process = atoi(word->c_str());
    const psString node = *++word;
    const psString device = psFormat("%02x:%02x", major(file.st_dev), minor(file.st_dev));
    const psString number = psFormat(":%llu", static_cast<unsigned long long>(file.st_ino));
    const bool isSame =
        withDevice ? node == device + number : node.substr(node.rfind(":")) == number;
    return isSame ? process : 0;
}

pid_t lockHolder(const struct stat& file, bool withDevice) {
    i_stream locks("/proc/locks", PS_OPEN_READ, false);
    psString line;
    pid_t holder = 0;
    while (holder == 0 && locks.getline(line)) {
        holder = holderIn(line, file, withDevice);
    }
    return holder;
}

} // namespace

psString psLockHolderText(const struct stat& file) {
    pid_t holder = lockHolder(file, true);
    holder = holder ? holder : lockHolder(file, false);
    if (holder == getpid()) {
        return {};
    }
    if (holder <= 0) {
        return "another process";
    }
    psString text = "process " + psText(static_cast<int>(holder));
    psString program;
    if (i_stream("/proc/" + psText(static_cast<int>(holder)) + "/comm", PS_OPEN_READ, false)
            .getline(program)) {
        text << " (" << program << ")";
    }
    return text;
}

// Empties a regular file that no other run writes. Where locks do not exist (some network file
// systems) nobody can know.
static bool takeNew(int number, psString& reason) {
    struct stat file;
    if (fstat(number, &file) != 0 || !S_ISREG(file.st_mode)) {
        return true;
    }
    if (flock(number, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        const psString holder = psLockHolderText(file);
        if (!holder.empty()) {
            reason = holder + " is writing it; wait for its end or choose another name";
            return false;
        }
    }
    return ftruncate(number, 0) == 0;
}

FILE* psOpenFile(const psString& name, int mode, psString& reason) {
    if (isNamedPipe(name)) {
        return openNamedPipe(name, mode, reason);
    }
    Descriptor file = opened(name, openFlags(mode));
    if (file.isOpen() && mode & PS_OPEN_WRITE) {
        if (mode & PS_OPEN_APPEND) {
            flock(file.number(), LOCK_SH | LOCK_NB); // also beside a run that opened it new
        } else if (!takeNew(file.number(), reason)) {
            return nullptr;
        }
    }
    return file.toFile(mode);
}

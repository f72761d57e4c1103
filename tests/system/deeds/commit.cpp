// The deeds, one function each. The table below has their names and what belongs to them.

#undef NDEBUG // one of them is an assertion

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cassert>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>

#include "deeds.h"
#include "ntkdc.h"

namespace {

constexpr Answer handedOn = {0, 0};

void readNothing() {
    volatile int* volatile nothing = nullptr;
    (void)*nothing;
}

Answer segv(const Words&, const Arguments&) {
    readNothing();
    return handedOn;
}

Answer callAbort(const Words&, const Arguments&) {
    std::abort();
}

Answer failAssertion(const Words&, const Arguments&) {
    assert(!"a deed");
    return handedOn;
}

// A page beyond the end of its file.
Answer bus(const Words&, const Arguments&) {
    const int file = memfd_create("empty", 0);
    auto* const page =
        static_cast<volatile char*>(mmap(nullptr, 4096, PROT_READ, MAP_SHARED, file, 0));
    close(file);
    (void)*page;
    return handedOn;
}

Answer trap(const Words&, const Arguments&) {
    asm volatile("int3");
    return handedOn;
}

Answer sendSignal(const Words& words, const Arguments&) {
    raise(std::stoi(words.at(1)));
    return handedOn;
}

Answer signalParent(const Words& words, const Arguments&) {
    kill(getppid(), std::stoi(words.at(1)));
    pause(); // what is to come takes its time
    return handedOn;
}

Answer callExit(const Words& words, const Arguments&) {
    std::exit(std::stoi(words.at(1)));
}

Answer hang(const Words&, const Arguments&) {
    for (;;) {
        pause();
    }
}

Answer destroyHeap(const Words&, const Arguments&) {
    void* volatile block = std::malloc(100);
    std::free(block);
    std::free(block);
    return handedOn;
}

Answer segvInThread(const Words&, const Arguments&) {
    std::thread(readNothing).join();
    return handedOn;
}

// Takes the handlers of faults away.
Answer takeHandlers(const Words&, const Arguments&) {
    for (const int code : {SIGSEGV, SIGFPE, SIGILL, SIGABRT, SIGBUS, SIGTRAP, SIGSYS}) {
        std::signal(code, SIG_DFL);
    }
    return handedOn;
}

Answer blockSignals(const Words&, const Arguments&) {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    return handedOn;
}

Answer giveStatus(const Words& words, const Arguments&) {
    return {1, std::stol(words.at(1))};
}

Answer poke(const Words& words, const Arguments& arguments) {
    *reinterpret_cast<int*>(arguments[std::stoi(words.at(1))]) = std::stoi(words.at(2));
    return {1, 0};
}

Answer writeBeside(const Words& words, const Arguments& arguments) {
    char* const block = reinterpret_cast<char*>(arguments[std::stoi(words.at(1))]);
    // Zeros are nowhere in the pattern around a block.
    memset(block + std::stol(words.at(2)), 0, std::stoul(words.at(3)));
    return handedOn;
}

Answer changeLocale(const Words& words, const Arguments&) {
    if (!std::setlocale(LC_ALL, words.at(1).c_str())) {
        refuse("there is no locale " + words.at(1));
    }
    return handedOn;
}

Answer giveVersion(const Words& words, const Arguments&) {
    static const std::string text = [&] {
        std::string joined = words.at(1);
        for (size_t i = 2; i < words.size(); ++i) {
            joined += " " + words[i];
        }
        return joined;
    }();
    static const NtkLibraryVersion version = {"ntkDC", text.c_str(), "Jan 31 2024"};
    return {1, reinterpret_cast<long>(&version)};
}

const struct Deed {
    const char* name;
    Answer (*commit)(const Words&, const Arguments&);
} deeds[] = {
    // Signals; the call goes on after one that is survived.
    {"segv", segv},
    {"abort", callAbort},
    {"assert", failAssertion},
    {"bus", bus},
    {"trap", trap},
    {"signal", sendSignal},   // NUMBER: as another process or the terminal sends it
    {"parent", signalParent}, // NUMBER: to who watches over the process
    {"thread-segv", segvInThread},
    {"heap", destroyHeap}, // two releases of a block, which the allocator finds out
    // The process.
    {"exit", callExit}, // STATUS
    {"hang", hang},
    {"handlers", takeHandlers}, // those of faults
    {"mask", blockSignals},
    {"setlocale", changeLocale}, // NAME
    // Memory.
    {"write", writeBeside}, // ARGUMENT OFFSET BYTES: beside what the argument points to
    // Answers in place of the real call.
    {"status", giveStatus},   // NUMBER
    {"poke", poke},           // ARGUMENT NUMBER: the int that the argument points to, and no error
    {"version", giveVersion}, // WORD...: to who asks for the library's version
};

} // namespace

Answer commitDeed(const Words& words, const Arguments& arguments) {
    for (const Deed& deed : deeds) {
        if (words.at(0) == deed.name) {
            return deed.commit(words, arguments);
        }
    }
    refuse("there is no deed " + words.at(0));
}

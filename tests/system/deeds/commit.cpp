// The deeds, one function each; the table below names them.

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

// signal NUMBER: as another process or the terminal sends it, then the call goes on.
Answer sendSignal(const Words& words, const Arguments&) {
    raise(std::stoi(words.at(1)));
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

// The allocator finds out and aborts.
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

// status N: answers at once.
Answer giveStatus(const Words& words, const Arguments&) {
    return {1, std::stol(words.at(1))};
}

// poke ARGUMENT N: writes the int that the argument points to, and answers that all went well.
Answer poke(const Words& words, const Arguments& arguments) {
    *reinterpret_cast<int*>(arguments[std::stoi(words.at(1))]) = std::stoi(words.at(2));
    return {1, 0};
}

// write ARGUMENT OFFSET BYTES: beside what the argument points to.
Answer writeBeside(const Words& words, const Arguments& arguments) {
    char* const block = reinterpret_cast<char*>(arguments[std::stoi(words.at(1))]);
    memset(block + std::stol(words.at(2)), 0xEE, std::stoul(words.at(3)));
    return handedOn;
}

// setlocale NAME
Answer changeLocale(const Words& words, const Arguments&) {
    if (!std::setlocale(LC_ALL, words.at(1).c_str())) {
        refuse("there is no locale " + words.at(1));
    }
    return handedOn;
}

const struct Deed {
    const char* name;
    Answer (*commit)(const Words&, const Arguments&);
} deeds[] = {
    {"segv", segv},
    {"abort", callAbort},
    {"assert", failAssertion},
    {"bus", bus},
    {"trap", trap},
    {"signal", sendSignal},
    {"exit", callExit},
    {"hang", hang},
    {"heap", destroyHeap},
    {"thread-segv", segvInThread},
    {"handlers", takeHandlers},
    {"mask", blockSignals},
    {"status", giveStatus},
    {"poke", poke},
    {"write", writeBeside},
    {"setlocale", changeLocale},
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

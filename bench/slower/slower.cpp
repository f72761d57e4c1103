// A libntkdc.so.12 that hands every call to the real one and makes chosen functions slower by a
// known amount: a chain of dependent multiplications, each of which waits for the one before it.
//
// The chain comes before the real call, between two fences, so that none of it overlaps with the
// function or with what is around the call; there it costs what it would cost behind the call, and
// as the call is then a jump that leaves registers and stack as they came, no signature has to be
// known. A function with an amount of 0 takes the same way with a chain of no multiplications: two
// folders whose files name the same functions differ in the chains alone. Eight multiplications
// come before each chain: the first few would hide behind the fence's own latency and cost nothing.
// A function that is not named is handed on by a mere jump.
//
// The amounts are read from slower.txt in the folder through which this library was found (a
// symbolic link counts with its own folder). A line is one of
//   library PATH       the real library (the own build, if there is none); from that folder
//   FUNCTION NUMBER    multiplications a call
//   # ...              a remark; empty lines are passed over, too

#include <dlfcn.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "reallibrary.h"

// The forwarding code. rax, r10 and r11 carry no argument.
#define FORWARD(name)                                                                              \
    extern "C" [[gnu::visibility("hidden")]] long name##_chain;                                    \
    extern "C" [[gnu::visibility("hidden")]] void* name##_real;                                    \
    long name##_chain = -1;                                                                        \
    void* name##_real = nullptr;                                                                   \
    asm(".pushsection .text." #name ",\"ax\",@progbits\n"                                          \
        ".p2align 6\n"                                                                             \
        ".globl " #name "\n"                                                                       \
        ".type " #name ", @function\n" #name ":\n"                                                 \
        "  movq " #name "_chain(%rip), %rax\n"                                                     \
        "  testq %rax, %rax\n"                                                                     \
        "  js 3f\n"                                                                                \
        "  lfence\n"                                                                               \
        "  .rept 8\n"                                                                              \
        "  imulq %r11, %r11\n"                                                                     \
        "  .endr\n"                                                                                \
        "  testq %rax, %rax\n"                                                                     \
        "  jz 2f\n"                                                                                \
        "1: imulq %r11, %r11\n"                                                                    \
        "  decq %rax\n"                                                                            \
        "  jnz 1b\n"                                                                               \
        "2: lfence\n"                                                                              \
        "3: jmpq *" #name "_real(%rip)\n"                                                          \
        ".size " #name ", .-" #name "\n"                                                           \
        ".popsection\n");
#include "forwarded.inc"
#undef FORWARD

namespace {

struct Forwarded {
    const char* name;
    long* chain;
    void** real;
};
const Forwarded functions[] = {
#define FORWARD(name) {#name, &name##_chain, &name##_real},
#include "forwarded.inc"
#undef FORWARD
};

[[noreturn]] void refuse(const std::string& why) {
    endWithout("slower", why);
}

std::string folderOfThis() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&functions), &info);
    const std::string path = info.dli_fname ? info.dli_fname : "";
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

bool isInThis(void* address) {
    Dl_info own{};
    Dl_info other{};
    return dladdr(reinterpret_cast<const void*>(&functions), &own) && dladdr(address, &other) &&
           own.dli_fbase == other.dli_fbase;
}

void open(const std::string& path) {
    void* const library = openRealLibrary(path);
    if (!library) {
        refuse(std::string("cannot load the real library: ") + dlerror() +
               "; name it in slower.txt: library PATH");
    }
    for (const Forwarded& function : functions) {
        *function.real = dlsym(library, function.name);
        if (!*function.real) {
            refuse(path + " has no " + function.name + ", which this library hands to it");
        }
        if (isInThis(*function.real)) {
            refuse(path + " is this library itself: name the real one in slower.txt");
        }
    }
}

void readLine(const std::string& line, const std::string& folder, std::string& library) {
    std::istringstream words(line);
    std::string name;
    if (!(words >> name) || name.starts_with('#')) {
        return;
    }
    if (name == "library") {
        std::getline(words >> std::ws, library);
        library = library.starts_with('/') ? library : folder + "/" + library;
        return;
    }
    long chain = 0;
    if (!(words >> chain) || chain < 0 || !(words >> std::ws).eof()) {
        refuse("slower.txt: '" + line + "' is not FUNCTION NUMBER");
    }
    for (const Forwarded& function : functions) {
        if (name == function.name) {
            *function.chain = chain;
            return;
        }
    }
    refuse("slower.txt: the library has no function " + name);
}

[[gnu::constructor]] void start() {
    const std::string folder = folderOfThis();
    std::string library = SLOWER_OWN_LIBRARY;
    std::ifstream amounts(folder + "/slower.txt");
    for (std::string line; std::getline(amounts, line);) {
        readLine(line, folder, library);
    }
    open(library);
}

} // namespace

// For a program that measures what a chain costs: sets the multiplications of a function, and
// returns those that it had (none when it was not named); -1: there is no such function.
extern "C" [[gnu::visibility("default")]] long ntkSlowerSet(const char* name, long chain) {
    for (const Forwarded& function : functions) {
        if (std::strcmp(name, function.name) == 0) {
            const long before = *function.chain;
            *function.chain = chain;
            return before < 0 ? 0 : before;
        }
    }
    return -1;
}

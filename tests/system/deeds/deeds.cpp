// A libntkdc.so.12 that hands every call to the real one, but for those that the environment asks
// for a deed:
//
//   NTK_DEEDS="FUNCTION [if ARGUMENT VALUE] [at CALL] DEED ...; FUNCTION ..."
//
// FUNCTION does the deed (see commit.cpp) in each call, or when the argument of that number (1 is
// the first) is VALUE as an int, or in its CALLth call (1 is the first) alone. A deed comes before
// the real call and may answer in its place.

#include <dlfcn.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "deeds.h"
#include "reallibrary.h"

struct Function {
    void* real; // first: the code above jumps through it
    const char* name;
    Words deed = {};
    int argument = 0; // 0: whatever it is
    int value = 0;
    long onlyCall = 0; // 0: each
    long calls = 0;
};

// The forwarding code: the argument registers to the stack, deedBefore(), back again.
// rax, r10 and r11 carry no argument.
#define FORWARD(name)                                                                              \
    extern "C" [[gnu::visibility("hidden")]] Function name##_function;                             \
    asm(".pushsection .text." #name ",\"ax\",@progbits\n"                                          \
        ".globl " #name "\n"                                                                       \
        ".type " #name ", @function\n" #name ":\n"                                                 \
        "  pushq %r9\n  pushq %r8\n  pushq %rcx\n  pushq %rdx\n  pushq %rsi\n  pushq %rdi\n"       \
        "  pushq %rax\n"                                                                           \
        "  leaq " #name "_function(%rip), %rdi\n"                                                  \
        "  leaq 8(%rsp), %rsi\n"                                                                   \
        "  call deedBefore\n"                                                                      \
        "  movq %rdx, %r11\n"                                                                      \
        "  testq %rax, %rax\n"                                                                     \
        "  popq %rax\n"                                                                            \
        "  popq %rdi\n  popq %rsi\n  popq %rdx\n  popq %rcx\n  popq %r8\n  popq %r9\n"             \
        "  jz 1f\n"                                                                                \
        "  movq %r11, %rax\n"                                                                      \
        "  ret\n"                                                                                  \
        "1: jmpq *" #name "_function(%rip)\n"                                                      \
        ".size " #name ", .-" #name "\n"                                                           \
        ".popsection\n");

#include "forwarded.inc"
#undef FORWARD

#define FORWARD(name) Function name##_function = {nullptr, #name};
#include "forwarded.inc"
#undef FORWARD

namespace {

Function* const functions[] = {
#define FORWARD(name) &name##_function,
#include "forwarded.inc"
#undef FORWARD
};

void openReal() {
    void* const library = openRealLibrary(DEEDS_REAL_LIBRARY);
    for (Function* const function : functions) {
        function->real = library ? dlsym(library, function->name) : nullptr;
        if (!function->real) {
            refuse(std::string("nothing to forward to: ") + dlerror());
        }
    }
}

Function& functionOf(const std::string& name) {
    for (Function* const function : functions) {
        if (name == function->name) {
            return *function;
        }
    }
    refuse("there is no function " + name);
}

void readOrder(const std::string& order) {
    std::istringstream in(order);
    std::string word;
    if (!(in >> word)) {
        return;
    }
    Function& function = functionOf(word);
    while (in >> word) {
        if (function.deed.empty() && word == "if") {
            in >> function.argument >> function.value;
        } else if (function.deed.empty() && word == "at") {
            in >> function.onlyCall;
        } else {
            function.deed.push_back(word);
        }
    }
    if (function.deed.empty()) {
        refuse("no deed: " + order);
    }
}

[[gnu::constructor(65535)]] void start() {
    openReal();
    const char* const orders = std::getenv("NTK_DEEDS");
    std::istringstream in(orders ? orders : "");
    for (std::string order; std::getline(in, order, ';');) {
        readOrder(order);
    }
}

} // namespace

extern "C" [[gnu::visibility("hidden"), gnu::used]] Answer deedBefore(Function* function,
                                                                      long* words) {
    const Arguments arguments(words);
    if (function->deed.empty() ||
        (function->argument &&
         static_cast<int>(arguments[function->argument]) != function->value) ||
        (++function->calls != function->onlyCall && function->onlyCall)) {
        return {0, 0};
    }
    return commitDeed(function->deed, arguments);
}

void refuse(const std::string& why) {
    endWithout("deeds", why);
}

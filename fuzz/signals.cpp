// The harness handles signals from the start of the program on, and libFuzzer leaves handlers alone
// that it finds: a finding would end the process without its input.
#include <csignal>
#include <initializer_list>

// Called by libFuzzer before it sets its own handlers.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (const int signal :
         {SIGABRT, SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGSYS, SIGINT, SIGTERM, SIGHUP}) {
        std::signal(signal, SIG_DFL);
    }
    return 0;
}

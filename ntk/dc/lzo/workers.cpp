#include "workers.h"

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <atomic>

#include "ntkcore.h"

namespace ntk::lzo {

namespace {

struct Jobs {
    void (*run)(void* context, unsigned job);
    void* context;
    unsigned count;
    std::atomic<unsigned> next{0};
};

void* work(void* argument) {
    Jobs& jobs = *static_cast<Jobs*>(argument);
    for (unsigned job = jobs.next++; job < jobs.count; job = jobs.next++) {
        jobs.run(jobs.context, job);
    }
    return nullptr;
}

// The new threads block all signals, because the caller's handlers may rely on being run by the
// caller's threads. (Not std::thread, whose constructor throws if no thread can be started.)
unsigned startThreads(pthread_t* threads, unsigned wanted, Jobs& jobs) {
    sigset_t all;
    sigset_t callers;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &callers);
    unsigned started = 0;
    while (started < wanted && pthread_create(&threads[started], nullptr, work, &jobs) == 0) {
        ++started;
    }
    pthread_sigmask(SIG_SETMASK, &callers, nullptr);
    return started;
}

} // namespace

unsigned allowedWorkers() {
    int threads = 1;
    ntkGetNumThreads(&threads);
    return std::min(static_cast<unsigned>(threads), maxWorkers);
}

void runJobs(unsigned count, unsigned workers, void (*run)(void* context, unsigned job),
             void* context) {
    Jobs jobs{run, context, count};
    pthread_t threads[maxWorkers];
    const unsigned wanted = std::min({workers, count, maxWorkers});
    const unsigned started = wanted > 1 ? startThreads(threads, wanted - 1, jobs) : 0;
    work(&jobs);
    for (unsigned i = 0; i < started; ++i) {
        pthread_join(threads[i], nullptr);
    }
}

} // namespace ntk::lzo

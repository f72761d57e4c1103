// Independent jobs distributed among threads.
#pragma once

namespace ntk::lzo {

inline constexpr unsigned maxWorkers = 64;

// The number of threads set by ntkSetNumThreads, at most maxWorkers.
unsigned allowedWorkers();

// Calls run(context, job) for every job from 0 to count - 1, in any order, and returns when all are
// done. The caller's thread is one of the workers; no other is started for one job or one worker.
// If the system cannot start a thread, the others do its jobs.
void runJobs(unsigned count, unsigned workers, void (*run)(void* context, unsigned job),
             void* context);

} // namespace ntk::lzo

// Independent jobs shared out over threads.
#pragma once

namespace ntk::lzo {

inline constexpr unsigned maxWorkers = 64;

// What ntkSetNumThreads allows, up to maxWorkers.
unsigned allowedWorkers();

// Runs run(context, job) for every job from 0 to jobs - 1, in no order, and returns when all are
// done. The caller's thread works too; no other is made for one job or one worker. Threads that the
// system refuses are done without.
void runJobs(unsigned jobs, unsigned workers, void (*run)(void* context, unsigned job),
             void* context);

} // namespace ntk::lzo

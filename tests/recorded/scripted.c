/* Preloaded into a program of the harness, it replaces whatever differs from run to run: the clock
 * of the processor, that of the system, and how often the process was switched out. All show one
 * scripted time, which moves by a pseudo-random step at each reading of the processor's clock, by
 * the span of each sleep, and by a little whenever the time of day is asked for, so that a loop
 * that waits for it ends.
 *
 * SCRIPTED_SEED starts another sequence of steps, SCRIPTED_STEP is the mean step in clocks.
 */
#include <stddef.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <time.h>

#include "ntkcore.h"

enum {
    clocksPerMicrosecond = 2100,
    askedNanoseconds = 100000,
    cacheBytes = 1 << 20,
    clocksPerSwitch = 100000000
};

static const Ntk64u startSeconds = 1700000000;
static Ntk64u elapsedClocks; /* since the scripted time began */

static Ntk32u settingOr(const char* name, Ntk32u standard) {
    const char* const text = getenv(name);
    return text ? (Ntk32u)strtoul(text, NULL, 10) : standard;
}

/* Marsaglia's xorshift; never 0. */
static Ntk32u nextRandom(void) {
    static Ntk32u state;
    if (state == 0) {
        state = settingOr("SCRIPTED_SEED", 1) * 2654435769U | 1;
    }
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

/* Steps of all sizes: one in eight is up to a thousand times as short as the mean. */
static Ntk64u nextReading(void) {
    const Ntk32u mean = settingOr("SCRIPTED_STEP", 500000);
    const Ntk32u random = nextRandom();
    const Ntk64u step = 1 + (Ntk64u)(random >> 8) * mean / (1U << 23);
    elapsedClocks += (random & 7) == 0 ? 1 + step / 1000 : step;
    return elapsedClocks;
}

Ntk64u ntkGetCpuClocks(void) {
    return nextReading();
}
Ntk64u ntkStartTsc(void) {
    return nextReading();
}
Ntk64u ntkStopTsc(void) {
    return nextReading();
}
Ntk64u ntkStartTscp(void) {
    return nextReading();
}
Ntk64u ntkStopTscp(void) {
    return nextReading();
}

static void advance(Ntk64u nanoseconds) {
    elapsedClocks += nanoseconds * clocksPerMicrosecond / 1000;
}

static Ntk64u elapsedNanoseconds(void) {
    return elapsedClocks / clocksPerMicrosecond * 1000;
}

/* The parameters of the C library have reserved names.
 * NOLINTBEGIN(readability-inconsistent-declaration-parameter-name) */
int clock_gettime(clockid_t clock, struct timespec* pNow) {
    (void)clock;
    advance(askedNanoseconds);
    pNow->tv_sec = (time_t)(startSeconds + elapsedNanoseconds() / 1000000000);
    pNow->tv_nsec = (long)(elapsedNanoseconds() % 1000000000);
    return 0;
}

time_t time(time_t* pNow) {
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (pNow != NULL) {
        *pNow = now.tv_sec;
    }
    return now.tv_sec;
}

int nanosleep(const struct timespec* pSpan, struct timespec* pLeft) {
    (void)pLeft;
    advance((Ntk64u)pSpan->tv_sec * 1000000000 + (Ntk64u)pSpan->tv_nsec);
    return 0;
}

/* A process that is switched out now and then. */
int getrusage(__rusage_who_t who, struct rusage* pUsage) {
    (void)who;
    *pUsage = (struct rusage){.ru_nivcsw = (long)(elapsedClocks / clocksPerSwitch)};
    return 0;
}
/* NOLINTEND(readability-inconsistent-declaration-parameter-name) */

/* Small, so that the data of cache mode are small too. */
NtkStatus ntkGetMaxCacheSizeB(int* pSizeBytes) {
    *pSizeBytes = cacheBytes;
    return ntkStsNoErr;
}

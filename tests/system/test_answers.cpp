// What the program answers without measuring, and what a run costs beside its measuring. Times are
// bounded loosely and from above, the best of a few tries: other work may slow any one of them.
#include "session.h"

#include <algorithm>

namespace {

class Answers : public SystemTest {};

constexpr int tries = 4;
// Reading the processor's frequency takes at least two seconds.
constexpr double atOnceSeconds = 1.5;

TEST_F(Answers, HelpVersionAndListingComeAtOnce) {
    for (const char* const key : {"-h", "-hh", "-hf", "-?", "-v", "-e", "-e+", "-e-"}) {
        double best = atOnceSeconds;
        for (int i = 0; i < tries && best >= atOnceSeconds; ++i) {
            best = std::min(best, runWell({key}).wallSeconds);
        }
        EXPECT_LT(best, atOnceSeconds) << key;
    }
    const Outcome outcome = runWell({"-h", "-e", "-B"});
    EXPECT_EQ(timesIn(outcome.output, "-B: ignored because of -h option\n"), 1) << outcome.output;
    EXPECT_EQ(timesIn(outcome.output, "QUICK HELP\n"), 1) << outcome.output;
}

TEST_F(Answers, OutputBeginsSoonAndMemoryStaysSmall) {
    double soonest = 1e9;
    long smallestKiB = 1L << 40;
    for (int i = 0; i < tries; ++i) {
        const Outcome outcome = runWell(quick + Texts{"-f=ntksEncodeLZ4_8u", "-dCodeLength=262144"},
                                        {.directory = corpusDirectory()});
        ASSERT_GE(outcome.firstOutputSeconds, 0);
        soonest = std::min(soonest, outcome.firstOutputSeconds);
        smallestKiB = std::min(smallestKiB, outcome.peakKiB);
    }
    EXPECT_LT(soonest, 0.5);
#ifndef __SANITIZE_ADDRESS__ // the sanitizer keeps memory of its own
    EXPECT_LT(smallestKiB, 64 * 1024);
#endif
}

} // namespace

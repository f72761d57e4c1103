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
    const struct {
        Texts keys;
        const char* first;
        const char* last;
    } cases[] = {
        {{"-h"}, "Brask NTK. Performance System 2.0, ", "\n-h<key>          = "},
        {{"-hh"}, "EXTENDED HELP\n", "will be created\n    and filled\n"},
        {{"-hf"}, "EXTENDED KEY HELP\n-f < or-pattern>", "Use -h option to type full key list\n"},
        {{"-?"}, "QUICK HELP with hidden keys\n", "\n-W= unmask floating-point exceptions\n"},
        {{"-v"}, "Brask NTK. Performance System 2.0, ", ""},
        {{"-e"}, "   #  Function ", "ntksEncodeLZ4_8u "},
        {{"-e+"}, "   #  Function ", "ntksEncodeLZ4HC_8u "},
        {{"-e-", "-fAdler"}, " Start    : ", "\nntksAdler32_8u\n"},
        {{"-h", "-e", "-B"}, "-B: ignored because of -h option\n", "QUICK HELP\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys.front());
        double best = atOnceSeconds;
        for (int i = 0; i < tries && best >= atOnceSeconds; ++i) {
            const Outcome outcome = runWell(c.keys);
            const size_t first = outcome.output.find(c.first);
            EXPECT_NE(first, std::string::npos) << outcome.output;
            EXPECT_NE(outcome.output.find(c.last, first), std::string::npos) << outcome.output;
            EXPECT_EQ(timesIn(outcome.output, "performance:"), 0);
            best = std::min(best, outcome.wallSeconds);
        }
        EXPECT_LT(best, atOnceSeconds);
    }
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

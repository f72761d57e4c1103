// What the program answers without measuring, and what a run costs beside its measuring.
#include "session.h"

namespace {

class Answers : public SystemTest {};

TEST_F(Answers, HelpGoesBeforeAllElse) {
    const Outcome outcome = runWell({"-h", "-e", "-B"});
    EXPECT_TRUE(hasOnce(outcome.output, "-B: ignored because of -h option\n"));
    EXPECT_TRUE(hasOnce(outcome.output, "QUICK HELP\n"));
}

#ifndef __SANITIZE_ADDRESS__ // the sanitizer keeps memory of its own
TEST_F(Answers, MemoryStaysSmall) {
    const Outcome outcome = runWell(quick + Texts{"-f=ntksEncodeLZ4_8u", "-dCodeLength=262144"},
                                    {.directory = corpusDirectory()});
    EXPECT_LT(outcome.peakKiB, 64 * 1024);
}
#endif

} // namespace

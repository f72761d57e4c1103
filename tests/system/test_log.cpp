// What a run says, in which order, on the console and in its log.
#include "session.h"

#include <algorithm>

namespace {

class Log : public SystemTest {};

constexpr const char* integrated =
    "\nBrask NTK Core library functions have been integrated into PS\n";

TEST_F(Log, MessagesComeInTheOrderOfTheRun) {
    const Outcome outcome = runWell(quick + Texts{crc, "-f=ntksAdler32_8u"});
    const std::string pieces[] = {
        integrated,
        "Command line options: \n-B: batch mode\n",
        "Address space layout randomization (ASLR) is ",
        integrated,
        "Brask NTK libraries information has been set into PS\n",
        "Sorting functions...\n",
        " Processor: ",
        " OS       : ",
        " Computer : ",
        " Library  : ntkDC, 12.",
        " Start    : ",
        "Method = Manual\nNumLoops = 1\n",
        "End of common specifications",
        " Function : ntksAdler32_8u\n Test     : TimdcChecksum\n Source   : p_dcchecksum_ia\n",
        " Start    : ",
        "ntksAdler32_8u: CodeLength=16384 \n-- performance:\n",
        "ntksAdler32_8u: CodeLength=262144 \n-- performance:\n",
        " Result   : successfully, 00:00:0",
        " Function : ntksCRC32_8u\n",
        " Start    : ",
        " Result   : successfully, 00:00:0",
        " PS Summary\n",
    };
    size_t at = 0;
    for (const std::string& piece : pieces) {
        const size_t found = outcome.output.find(piece, at);
        ASSERT_NE(found, std::string::npos) << "not behind position " << at << ": " << piece << "\n"
                                            << outcome.output;
        at = found + piece.size();
        EXPECT_EQ(timesIn(outcome.output, piece),
                  std::count(std::begin(pieces), std::end(pieces), piece))
            << piece;
    }
}

// The log begins where the line of options, which names it, is printed.
TEST_F(Log, HoldsWhatTheConsoleShowed) {
    for (const char* const level : {"-LPERF", "-LERR", "-LINFO", "-LTRACE"}) {
        const Outcome outcome = runWell(quick + Texts{crc, level, "-olog.txt"});
        const std::string log = text("log.txt");
        EXPECT_TRUE(log.starts_with("Command line options: \n")) << log.substr(0, 100);
        EXPECT_TRUE(outcome.output.ends_with(log)) << level;
        EXPECT_EQ(outcome.output.size(), log.size() + std::string(integrated).size()) << level;
        EXPECT_EQ(log.find("trace into") != std::string::npos, level == std::string("-LTRACE"));
    }
}

} // namespace

// Effects outside the tables: facts about the machine, the signal file.
#include <ctime>
#include <filesystem>

#include "session.h"

namespace {

class Keys : public SystemTest {};

// In front of what is measured. Short, unless they are asked for.
TEST_F(Keys, MachineFactsAreTests) {
    const struct {
        Texts keys;
        Texts pieces; // in this order
        int tests;
    } cases[] = {
        {{"-f__ps", crc, "-TSSE2"},
         {"    Got by CPUID Instruction Functions\n", "\n    SSE2              yes      yes\n",
          "\n    SSE3              yes      no\n",
          " Result   : ", "\n Computer : ", "\n OS       : Linux (", " Function : ntksCRC32_8u\n"},
         4},
        {{"-f-ntks"},
         {"\n Features : MMX SSE SSE2 ", "\n Computer : ", "\n OS       : Linux ("},
         3},
    };
    for (const auto& c : cases) {
        const std::string output = runWell(quick + c.keys).output;
        size_t at = output.find(" Start    : "); // the end of the title
        for (const std::string& piece : c.pieces) {
            at = output.find(piece, at);
            ASSERT_NE(at, std::string::npos) << piece << output;
        }
        EXPECT_EQ(closingCount(output, ".Number of tests: "), c.tests);
        EXPECT_EQ(closingCount(output, ".Successes      : "), c.tests);
    }
}

// Somebody may wait for the file, so every end of a session writes it: the time that it took, then
// when it ended.
TEST_F(Keys, EveryEndWritesTheSignalFile) {
    const Texts ends[] = {quick + Texts{crc},
                          {"-h"},
                          {"-v"},
                          {"-e"},
                          {"-B", "-@no such file"},
                          {"-B", "-r/no such directory/x.csv"}};
    for (const Texts& keys : ends) {
        runWell(keys + Texts{"-gdone"});
        const std::string written = text("done.end");
        std::tm time = {};
        const char* const end =
            strptime(written.c_str(), "00:00:%S\n%a %b %d %H:%M:%S %Y\n\n", &time);
        EXPECT_TRUE(end && *end == '\0' && linesOf(written).size() == 3) << keys.back() << "\n"
                                                                         << written;
        std::filesystem::remove(path("done.end"));
    }
}

} // namespace

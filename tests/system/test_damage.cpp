// A library that writes beyond the buffers of its tests.
#include "session.h"

namespace {

class WritesBeyondABuffer : public SystemTest {
protected:
    Outcome runWith(const std::string& deeds, const Texts& keys,
                    const std::string& guard = "") const {
        return expectWell(runWithDeeds(deeds, quick + keys + Texts{"-rtable.csv", "-usum.csv"},
                                       {.environment = {"NTKPERF_GUARD=" + guard}}));
    }
};

// The function writes so many bytes over the end of a block of that length, its first argument, or
// under its begin if they are negative.
std::string writing(const std::string& function, int length, int bytes) {
    return function + " write 1 " + std::to_string(bytes > 0 ? length : bytes) + " " +
           std::to_string(std::abs(bytes));
}

std::string crc32cWriting(int bytes) {
    return writing("ntksCRC32C_8u", 16384, bytes);
}

const Texts checksums = {"-fAdler", "-fCRC", "-dCodeLength=16384"};

TEST_F(WritesBeyondABuffer, IsAFunctionFailureAndTheRunGoesOn) {
    const std::pair<int, std::string> cases[] = {{1, "1 byte over its end"},
                                                 {1000, "1000 bytes over its end"},
                                                 {-200, "200 bytes under its begin"}};
    for (const auto& [bytes, said] : cases) {
        const Outcome outcome = runWith(crc32cWriting(bytes), checksums);
        EXPECT_TRUE(hasOnce(outcome.output,
                            "-- Memory fault: the calls of ntksCRC32C_8u wrote outside of block 0 "
                            "(16384 bytes, Vector 8u len=16384): " +
                                said + ";"));
        EXPECT_TRUE(hasOnce(outcome.output, "Memory fault"));
        EXPECT_EQ(result("ntksCRC32C_8u"), "FUNCFAIL");
        EXPECT_EQ(result("ntksCRC32_8u"), "OK");
        EXPECT_EQ(closingCount(outcome.output, ".Successes"), 3);
        EXPECT_EQ(closingCount(outcome.output, ".....-FAIL"), 1);
        const Table table(text("table.csv"));
        for (const Texts& row : table.rows) {
            const bool failed = table.cell(row, "Function") == "ntksCRC32C_8u";
            EXPECT_EQ(table.cell(row, "Result"), failed ? "FUNCFAIL" : "OK");
        }
        EXPECT_EQ(table.rows.size(), 4u);
    }
    // Also where the run restores the buffers before each call from copies.
    EXPECT_TRUE(
        hasOnce(runWith(crc32cWriting(1000), checksums + Texts{"-SU"}).output, "Memory fault"));
    EXPECT_EQ(result("ntksCRC32C_8u"), "FUNCFAIL");
}

TEST_F(WritesBeyondABuffer, InThePreparationEndsTheTestUnmeasured) {
    const Outcome outcome =
        runWith("ntksEncodeLZ4HashTableGetSize_8u poke 1 65536; " +
                    writing("ntksEncodeLZ4HashTableInit_8u", 65536, 200),
                {"-f=ntksEncodeLZ4_8u", "-fAdler", "-dCodeFile=paper1", "-dCodeLength=16384"});
    EXPECT_TRUE(hasOnce(outcome.output,
                        "-- Memory fault: the preparation of ntksEncodeLZ4_8u wrote "
                        "outside of block 3 (65536 bytes): 200 bytes over its end;"));
    EXPECT_EQ(result("ntksEncodeLZ4_8u"), "FUNCFAIL");
    EXPECT_EQ(result("ntksAdler32_8u"), "OK");
    EXPECT_EQ(Table(text("table.csv")).column("Function"), std::set<std::string>{"ntksAdler32_8u"});
}

// The very call faults. A write that stays within the alignment of the block's end is still found
// by the pattern.
TEST_F(WritesBeyondABuffer, FaultsAtAGuardPage) {
    const struct {
        std::string guard;
        int bytes;
        std::string result;
    } cases[] = {{"pages-after", 1, "EXCPTFAIL"},
                 {"pages-after", -1, "FUNCFAIL"},
                 {"pages-before", -1, "EXCPTFAIL"},
                 {"pages-before", 1, "FUNCFAIL"}};
    for (const auto& c : cases) {
        const Outcome outcome = runWith(crc32cWriting(c.bytes), checksums, c.guard);
        EXPECT_EQ(
            timesIn(outcome.output, "--NTK. Signal: Illegal storage access. in ntkFunctionCalls\n"),
            c.result == "EXCPTFAIL")
            << c.guard << outcome.output;
        EXPECT_TRUE(hasOnce(outcome.output, "-- NTKPERF_GUARD: a page without access " +
                                                c.guard.substr(6) + " each test block."));
        EXPECT_EQ(result("ntksCRC32C_8u"), c.result) << c.guard << c.bytes;
        EXPECT_EQ(result("ntksCRC32_8u"), "OK");
    }
}

TEST_F(WritesBeyondABuffer, AnUnknownGuardIsTold) {
    const Outcome outcome = runWith("", checksums, "page");
    EXPECT_TRUE(hasOnce(outcome.output, "-- NTKPERF_GUARD: \"page\" is not known, no pages are "
                                        "guarded: use pages-after or pages-before\n"));
    EXPECT_EQ(result("ntksCRC32C_8u"), "OK");
}

} // namespace

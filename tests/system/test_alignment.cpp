// Buffers at odd addresses: all tests give results, and the sanitizers, in the build that has them,
// find nothing in library and benchmarks. Once more with pages without access beside the buffers,
// which show reading beyond them, too.
#include "session.h"

namespace {

class Alignment : public SystemTest {};

TEST_F(Alignment, AllTestsTakeOddAddresses) {
    const Texts functions = listedFunctions();
    for (const std::string align : {"1", "3", "63"}) {
        for (const std::string guard : {"", "pages-after", "pages-before"}) {
            const Outcome outcome = runWell(
                quick + Texts{"-dVectorAlign=" + align, "-dMisalignFirstVectorOnly=no",
                              "-dCodeLength=20001", "-dCodeFile=paper1", "-rtable.csv"},
                {.directory = corpusDirectory(), .environment = {"NTKPERF_GUARD=" + guard}});
            EXPECT_EQ(closingCount(outcome.output, ".Failures"), 0) << outcome.output;
            const Table table(text("table.csv"));
            EXPECT_EQ(table.column("Function"), std::set(functions.begin(), functions.end()));
            EXPECT_EQ(table.column("Result"), std::set<std::string>{"OK"}) << align << guard;
        }
    }
}

} // namespace

// What a combination shows: its line in the log and its row in the table. LZSS, whose ratio is not
// that of the measured calls, has a test of its own.

#include "family.h"

#include "captured.h"
#include "p_dclz4.h"
#include "p_dclzo_ia.h"

namespace {

struct Shown {
    const char *function, *parameter, *variant; // a parameter of the family, none: empty
    const char* line;                           // FILE stands for the file
    const char* cells;                          // also RATIO, for that of 16384 bytes to the coded
    double (*codedLen)() = nullptr;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << shown.function;
}

double encodedLz4() {
    return dclz4::encodeDstLen;
}

const char* const plain = "length=16384 CodeLength=16384 CodeFile=FILE ";
const char* const plainCells = "16384,FILE,-,RATIO\n";
const char* const block = " length=102400 CodeFile=FILE ";
const char* const field = "length=131072 rate=8 ";

const Shown combinations[] = {
    {"ntksEncodeLZ4_8u", "", "", plain, plainCells, encodedLz4},
    {"ntksDecodeLZ4_8u", "", "", plain, plainCells,
     [] { return static_cast<double>(dclz4::decodeSrcLen); }},
    // The ratio of the whole file to the block of its second part.
    {"ntksEncodeLZ4Dict_8u", "dict", "E", "length=16384 dict=E CodeLength=16384 CodeFile=FILE ",
     "16384,FILE,E,RATIO\n", encodedLz4},
    {"ntksDecodeLZO_8u", "method", "ST1X",
     "length=16384 CodeLength=16384 CodeFile=FILE method=ST1X ", "16384,FILE,ST1X,RATIO\n",
     [] { return static_cast<double>(dclzo::dstLen); }},
    {"ntksBWTFwd_SelectSort_8u", "", "",
     " length=102400 CodeFile=FILE NtkBWTSortAlgorithmHint=ntkBWTItohTanakaLimSort ",
     "102400,FILE,ntkBWTItohTanakaLimSort,-\n"},
    {"ntksMTFInv_8u", "", "", block, "102400,FILE,-,-\n"},
    {"ntksDecodeHuff_BZ2_8u16u", "", "", block, "102400,FILE,-,-\n"},
    {"ntksDeflateHuff_8u", "comprLevel", "6", " length=102400 CodeFile=FILE comprLevel=6 ",
     "102400,FILE,6,-\n"},
    {"ntksEncodeZfp444_32f", "rate", "8", field, "131072,-,8,4\n"},
    {"ntksDecodeZfp444_32f", "rate", "8", field, "131072,-,8,4\n"},
};

void replace(std::string& text, const std::string& name, const std::string& value) {
    const size_t at = text.find(name);
    if (at != std::string::npos) {
        text.replace(at, name.length(), value);
    }
}

class Cells : public FamilyTest, public testing::WithParamInterface<Shown> {};

} // namespace

TEST_P(Cells, OfACombination) {
    const Shown& shown = GetParam();
    const std::string file = makeFile("text", sampleText(110000));
    choose("16384", file);
    psTest& test = started(shown.function);
    setNamed(test, shown.parameter, shown.variant);
    ASSERT_TRUE(test.initData());
    EXPECT_EQ(test.runTiming(), PS_OK);
    std::string line = shown.line, cells = shown.cells;
    replace(line, "FILE", file);
    replace(cells, "FILE", file);
    if (shown.codedLen) {
        replace(cells, "RATIO", psText(16384.0 / shown.codedLen()).c_str());
    }
    EXPECT_EQ(cellsOf(test), cells);
    const Captured log;
    test.parmsToOstrm();
    EXPECT_EQ(log.text(), line);
    test.flushData();
}

INSTANTIATE_TEST_SUITE_P(Of, Cells, testing::ValuesIn(combinations),
                         [](const auto& shown) { return std::string(shown.param.function); });

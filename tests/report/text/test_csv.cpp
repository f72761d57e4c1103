#include <gtest/gtest.h>

#include "csv.h"
#include "handmade.h"

namespace report {

namespace {

const std::string names = "group,function,types,family,kind,parameters,file,length,ratio,runs,"
                          "smallest_clocks,median_clocks,largest_clocks,spread,unit,"
                          "median_clocks_per_byte,result,comment\r\n";

TEST(Csv, ACaseIsALine) {
    Handmade made;
    made.group().label = "12.0.0 (-TSSE42)";
    Case& one = made.add("ntksDecodeLZ4_8u", {{"CodeLength", 16384LL}, {"CodeFile", "/c/a,b"}},
                         {1.0 / 3, 0.5, 3});
    one.types = "8u";
    one.family = "LZ4";
    one.kind = Case::Kind::decoder;
    one.file = "a,b";
    one.length = 16384;
    one.ratio = 2.5;
    one.spread = 0.125;
    one.bytesPerUnit = 2;
    one.comment = "say \"x\"";
    made.addGroup("");
    made.addFailed("ntksB_8u", {}, "FUNCFAIL", "-4");
    EXPECT_EQ(csvText(made.report),
              names +
                  "12.0.0 (-TSSE42),ntksDecodeLZ4_8u,8u,LZ4,decoder,\"CodeLength=16384 "
                  "CodeFile=/c/a,b\",\"a,b\",16384,2.5,3,0.3333333333333333,0.5,3,0.125,e,0.25,OK,"
                  "\"say \"\"x\"\"\"\r\n"
                  ",ntksB_8u,,,,,,,,0,,,,,e,,FUNCFAIL,-4\r\n");
}

TEST(Csv, WithoutCasesThereAreTheNames) {
    EXPECT_EQ(csvText(Report()), names);
}

} // namespace

} // namespace report

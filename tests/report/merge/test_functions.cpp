#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "functions.h"
#include "variants.h"

namespace report {

namespace {

TEST(Functions, FamilyAndKindAreThoseOfTheName) {
    struct Row {
        const char *function, *family;
        Case::Kind kind;
    };
    using Kind = Case::Kind;
    const Row rows[] = {{"ntksAdler32_8u", "Checksum", Kind::other},
                        {"ntksCRC32_BZ2_8u", "Checksum", Kind::other},
                        {"ntksEncodeLZ4DictSafe_8u", "LZ4", Kind::encoder},
                        {"ntksDecodeLZ4_8u", "LZ4", Kind::decoder},
                        {"ntksDecodeLZOSafe_8u", "LZO", Kind::decoder},
                        {"ntksEncodeLZSS_8u", "LZSS", Kind::encoder},
                        {"ntksEncodeZfp444_32f", "ZFP", Kind::encoder},
                        {"ntksDeflateLZ77_8u", "Deflate", Kind::encoder},
                        {"ntksInflate_8u", "Deflate", Kind::decoder},
                        {"ntksEncodeRLE_BZ2_8u", "BZ2", Kind::encoder},
                        {"ntksReduceDictionary_8u_I", "BZ2", Kind::encoder},
                        {"ntksExpandDictionary_8u_I", "BZ2", Kind::decoder},
                        {"ntksBWTFwd_SelectSort_8u", "BZ2", Kind::encoder},
                        {"ntksMTFInv_8u", "BZ2", Kind::decoder},
                        {"memcpy", "memcpy", Kind::other},
                        {"zzDecodeFoo_8u", "Foo", Kind::decoder},
                        {"CompressBar", "Bar", Kind::encoder},
                        {"ntksNew_8u", "New", Kind::other},
                        {"Decode", "Decode", Kind::decoder}};
    for (const Row& row : rows) {
        EXPECT_EQ(factsOf(row.function).family, row.family) << row.function;
        EXPECT_EQ(factsOf(row.function).kind, row.kind) << row.function;
    }
}

Case caseOf(const std::string& function, NamedValues parameters = {}) {
    Case one;
    one.function = function;
    one.kind = factsOf(function).kind;
    one.parameters = std::move(parameters);
    return one;
}

TEST(Functions, AUnitIsAByteUnlessItIsAValueOrACompressedByte) {
    struct Row {
        const char *function, *unit;
        std::optional<double> ratio, bytes;
    };
    const Row rows[] = {{"ntksEncodeLZ4_8u", "e", 1.5, 1},
                        {"ntksEncodeLZ4_8u", "e", {}, 1},
                        {"ntksDecodeLZ4_8u", "e", 1.5, 1.5},
                        {"ntksDecodeZfp444_32f", "e", 8, 8},
                        {"ntksEncodeZfp444_32f", "e", 8, 4},
                        {"ntksDecodeLZ4_8u", "e", {}, {}},
                        {"ntksDecodeLZ4_8u", "e", 0, {}},
                        {"memcpy", "e", 1.5, {}}, // nobody says what its unit is
                        {"memcpy", "byte", {}, 1},
                        {"zzDecodeFoo_8u", "byte", 2, {}}}; // it may be a compressed one
    for (const Row& row : rows) {
        Case one = caseOf(row.function);
        one.unit = row.unit;
        one.ratio = row.ratio;
        EXPECT_EQ(bytesPerUnit(one), row.bytes) << row.function << " " << row.unit;
    }
}

TEST(Functions, VariantIsWhatFileAndLengthDoNotTellAndShortNamesHaveAMeaning) {
    const struct {
        const char* function;
        NamedValues parameters;
        const char *variant, *meaning;
        double ratio; // of 3, with 5 bytes
    } cases[] = {
        {"ntksAny_8u", {{"CodeLength", 5LL}, {"CodeFile", std::string("bib")}}, "", "", 3},
        {"ntksAny_8u", {{"CodeLength", 5LL}, {"comprLevel", 6LL}}, "comprLevel=6", "", 3},
        {"ntksAny_8u", {{"a", 1LL}, {"b", std::string("x")}}, "a=1 b=x", "", 3},
        {"ntksAny_8u", {{"Variant", std::string("-")}}, "", "", 3},
        {"ntksAny_8u", {{"hint", std::string(" auto")}}, "hint=auto", "", 3},
        {"ntksEncodeLZO_8u", {{"Variant", std::string("ST")}}, "ST", "one thread", 3},
        {"ntksEncodeLZ4HC_8u", {{"dict", std::string("N")}}, "dict=N", "no dictionary", 3},
        // The second half of the data is what they encode.
        {"ntksEncodeLZ4HC_8u", {{"dict", std::string("I")}}, "dict=I", "where it stands", 1.2},
        {"ntksEncodeLZ4HC_8u",
         {{"Variant", std::string("E")}},
         "E",
         "a copy of the first half",
         1.2},
        {"ntksEncodeLZ4DictSafe_8u", {{"Variant", std::string("N")}}, "N", "no dictionary", 1.2},
    };
    for (const auto& c : cases) {
        Case one = caseOf(c.function, c.parameters);
        one.length = 5;
        EXPECT_EQ(variantText(one), c.variant);
        const std::string meaning = variantMeaning(one);
        EXPECT_NE(meaning.find(c.meaning), std::string::npos) << meaning;
        EXPECT_EQ(meaning.empty(), !*c.meaning) << meaning;
        EXPECT_EQ(ratioOfCall(one, 3), c.ratio) << c.function << " " << c.variant;
        one.length = 1;
        EXPECT_EQ(ratioOfCall(one, 3).has_value(), c.ratio == 3) << "half a byte is none";
    }
}

} // namespace

} // namespace report

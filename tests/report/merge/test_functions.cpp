#include <gtest/gtest.h>

#include "functions.h"

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

TEST(Functions, AUnitIsAByteUnlessItIsAValueOrACompressedByte) {
    EXPECT_EQ(bytesPerUnit("ntksEncodeLZ4_8u", 1.5), 1);
    EXPECT_EQ(bytesPerUnit("ntksEncodeLZ4_8u", std::nullopt), 1);
    EXPECT_EQ(bytesPerUnit("ntksDecodeLZ4_8u", 1.5), 1.5);
    EXPECT_EQ(bytesPerUnit("ntksDecodeZfp444_32f", 8), 8);
    EXPECT_EQ(bytesPerUnit("ntksEncodeZfp444_32f", 8), 4);
    EXPECT_FALSE(bytesPerUnit("ntksDecodeLZ4_8u", std::nullopt));
    EXPECT_FALSE(bytesPerUnit("ntksDecodeLZ4_8u", 0));
    EXPECT_FALSE(bytesPerUnit("memcpy", 1.5)) << "nobody says what its unit is";
}

} // namespace

} // namespace report

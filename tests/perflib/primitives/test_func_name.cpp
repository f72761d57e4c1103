#include "kxfunc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string str(const psString& s) {
    return s.c_str();
}

TEST(TypeName, CodesAndNamesAreInverse) {
    const struct {
        int code;
        const char* name;
        int bytes;
    } cases[] = {
        {8, "8u", 1},       {16, "16u", 2},    {32, "32u", 4},     {64, "64u", 8},
        {264, "8s", 1},     {272, "16s", 2},   {288, "32s", 4},    {320, "64s", 8},
        {544, "32f", 4},    {576, "64f", 8},   {1040, "16uc", 4},  {1288, "8sc", 2},
        {1296, "16sc", 4},  {1312, "32sc", 8}, {1344, "64sc", 16}, {1568, "32fc", 8},
        {1600, "64fc", 16},
    };
    for (const auto& c : cases) {
        const auto type = static_cast<kxType>(c.code);
        EXPECT_EQ(str(typeToString(type)), c.name);
        EXPECT_EQ(stringToType(c.name), c.code);
        EXPECT_EQ(kxTypeBytes(type), c.bytes) << c.name;
    }
    for (const int code : {0, 7, 24, 528, 1032, 1024, -8}) {
        EXPECT_EQ(str(typeToString(static_cast<kxType>(code))), "undef") << code;
        EXPECT_EQ(kxTypeBytes(static_cast<kxType>(code)), 0) << code;
    }
    for (const char* const name : {"", "undef", "8", "8U", "8u ", "24u", "8uc"}) {
        EXPECT_EQ(stringToType(name), kxUndef) << name;
    }
}

TEST(TypeName, LengthOfTheTokenInFront) {
    const std::pair<const char*, int> cases[] = {
        {"8u", 2}, {"32fc_x", 4}, {"16s16u", 3}, {"8", 0},     {"u8", 0},  {"", 0},
        {"8x", 0}, {"24u", 3},    {"8cu", 0},    {"64fcc", 4}, {"_8u", 0},
    };
    for (const auto& [text, length] : cases) {
        EXPECT_EQ(lenOfType(text), length) << text;
    }
}

TEST(FuncName, Parts) {
    const struct {
        const char *name, *prefix, *base, *types, *descr;
    } cases[] = {
        {"ntksEncodeLZ4_8u", "ntks", "EncodeLZ4", "8u", ""},
        {"ntksReduceDictionary_8u_I", "ntks", "ReduceDictionary", "8u", "I"},
        {"ntksEncodeZ1Z2_BZ2_8u16u", "ntks", "EncodeZ1Z2_BZ2", "8u16u", ""},
        {"ntkiAddC_8u_C3R_Sfs", "ntki", "AddC", "8u", "C3R_Sfs"},
        {"ntksLZSSGetSize", "ntks", "LZSSGetSize", "", ""},
        {"ntkX_8u", "", "ntkX", "8u", ""},
        {"", "", "", "", ""},
    };
    for (const auto& c : cases) {
        const kxFunc function(c.name);
        EXPECT_EQ(str(function.prefix()), c.prefix) << c.name;
        EXPECT_EQ(str(function.baseName()), c.base) << c.name;
        EXPECT_EQ(str(function.typeName()), c.types) << c.name;
        EXPECT_EQ(str(function.descrName()), c.descr) << c.name;
    }
}

TEST(FuncName, ArgumentTypes) {
    const std::pair<const char*, const char*> cases[] = {
        {"ntksEncodeLZ4_8u", "8u 8u 8u 8u"},
        {"ntksDecodeHuff_BZ2_8u16u", "8u 8u 16u 16u"},
        {"ntksF_8u16s", "8u 8u 16s 16s"},
        {"ntksF_8u16s32f", "8u 16s 32f 32f"},
        {"ntksF_8u16s32f64f", "8u 16s 32f 32f"},
        {"ntksF", "undef undef undef undef"},
        // The base names whose arguments do not follow the tokens.
        {"ntksMagnitude_32fc", "32fc 32fc 32f 32f"},
        {"ntksPhase_16sc32f", "16sc 16sc 32f 32f"},
        {"ntksRealToCplx_32f", "32f 32f 32fc 32fc"},
        {"ntksPolarToCart_32fc", "32f 32f 32fc 32fc"},
        {"ntksDotProd_32f32fc", "32f 32fc 32fc 32fc"},
        {"ntksMul_16u16s", "16u 16s 16s 16s"},
        {"ntksCopy_8u16s32s", "8u 8u 32s 32s"},
        {"ntksCompare_32f", "32f 32f 8u 8u"},
        {"ntksCompare", "undef undef undef undef"},
    };
    for (const auto& [name, types] : cases) {
        const kxFunc f(name);
        EXPECT_EQ(str(typeToString(f.srcType()) + " " + typeToString(f.src2Type()) + " " +
                      typeToString(f.dstType()) + " " + typeToString(f.dst2Type())),
                  types)
            << name;
    }
    const kxFunc function("f_8u16s32f");
    EXPECT_EQ(function.type(1), kx8u);
    EXPECT_EQ(function.type(2), kx16s);
    EXPECT_EQ(function.type(3), kx32f);
    EXPECT_EQ(function.type(4), kxUndef);
}

TEST(FuncName, DerivedDescriptorsCorrectTheTypes) {
    class Counting : public kxFunc {
        using kxFunc::kxFunc;
        void updateTypes(kxType&, kxType&, kxType& dst, kxType&) const override { dst = kx32s; }
    };
    EXPECT_EQ(Counting("f_8u").type(kxDst), kx32s);
    EXPECT_EQ(Counting("f_8u").type(kxSrc), kx8u);
}

TEST(FuncName, DescriptorLetters) {
    const std::pair<const char*, const char*> cases[] = {
        {"ntksMTFFwd_8u", ""},    {"ntksExpand_8u_I", "I"}, {"ntkiAdd_8u_C1MIR", "IMR"},
        {"ntksAdd_16s_Sfs", "S"}, {"ntksISMR_8u", ""},
    };
    for (const auto& [name, letters] : cases) {
        const kxFunc f(name);
        EXPECT_EQ(std::string(f.inplace() ? "I" : "") + (f.mask() ? "M" : "") +
                      (f.scale() ? "S" : "") + (f.roi() ? "R" : ""),
                  letters)
            << name;
    }
}

TEST(FuncName, PixelLayout) {
    const struct {
        const char *descr, *layout;
    } cases[] = {
        // source and destination: channels, p(lanes), a(lpha); then coi
        {"", "1 1"},       {"C3R", "3 3"},      {"C3P3R", "3 3p"},
        {"P3C4R", "3p 4"}, {"AC4R", "4a 4a"},   {"C3AC4R", "3 4a"},
        {"C1C3R", "1 3"},  {"C3CR", "3 3 coi"}, {"Sfs", "1 1"},
    };
    for (const auto& c : cases) {
        const kxFunc f(psString("f_8u_") + c.descr);
        const auto side = [&](kxArg arg) {
            return std::to_string(f.channels(arg)) + (f.plane(arg) ? "p" : "") +
                   (f.alpha(arg) ? "a" : "");
        };
        EXPECT_EQ(side(kxSrc) + " " + side(kxDst2) + (f.coi() ? " coi" : ""), c.layout) << c.descr;
    }
    EXPECT_EQ(str(kxFunc("f_8u_C3AC4R").channelsName(kxDst)), "AC4");
}

TEST(FuncName, Order) {
    // Each one before the next.
    const char* const names[] = {"ntksAdd_8u", "ntksAdd_16u", "ntksAdd_16u_I", "ntksAdd_16u16s",
                                 "ntksAdd_8s", "ntksAdd_32f", "ntksAdd_8sc",   "ntksMul_8u"};
    const int count = static_cast<int>(std::size(names));
    for (int a = 0; a < count; ++a) {
        for (int b = 0; b < count; ++b) {
            const int order = kxFunc(names[a]).compare(kxFunc(names[b]));
            EXPECT_EQ(a < b, order < 0) << names[a] << " " << names[b];
            EXPECT_EQ(a == b, order == 0) << names[a] << " " << names[b];
        }
    }
}

} // namespace

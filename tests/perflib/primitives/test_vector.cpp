#include "kxvector.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "captured.h"
#include "psalloc.h"

namespace {

constexpr kxType allTypes[] = {kx8u,  kx16u,  kx32u, kx64u,  kx8s,   kx16s,  kx32s,  kx64s, kx32f,
                               kx64f, kx16uc, kx8sc, kx16sc, kx32sc, kx64sc, kx32fc, kx64fc};

// The vector as "re,im re,im" or "re re".
std::string values(const kxVector& vector) {
    std::string text;
    for (int i = 0; i < vector.size(); ++i) {
        double re, im;
        vector.getIndex(i, re, im);
        text += psFormat(i ? " %.17g" : "%.17g", re).c_str();
        text += kxIsComplex(vector.type()) ? psFormat(",%.17g", im).c_str() : "";
    }
    return text;
}

std::string filled(kxType type, int len, SetMode mode, double a, double b) {
    kxVector vector(type);
    EXPECT_TRUE(vector.createVector(len, mode, a, b));
    return values(vector);
}

TEST(Vector, CreationAndRelease) {
    psFreeAll();
    {
        kxVector vector(kx32fc);
        EXPECT_EQ(vector.data(), nullptr);
        EXPECT_TRUE(vector.createVector(10));
        EXPECT_EQ(vector.size(), 10);
        EXPECT_EQ(vector.item(), 8);
        EXPECT_EQ(vector.objectSize(), 80);
        EXPECT_STREQ(vector.objectInfo().c_str(), "Vector 32fc len=10");
        EXPECT_EQ(vector.getPointerAt(3), static_cast<char*>(vector.data()) + 24);
        EXPECT_EQ(values(vector), "0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0 0,0");
        int size = 0;
        void* tag = nullptr;
        EXPECT_TRUE(psMallocInfo(vector.data(), &size, &tag));
        EXPECT_EQ(size, 80);
        EXPECT_EQ(tag, &vector);

        EXPECT_TRUE(vector.createVector(5, 1, &size)) << "replaces the data";
        EXPECT_TRUE(psMallocInfo(vector.data(), nullptr, &tag));
        EXPECT_EQ(tag, &size);
        EXPECT_EQ(psSumOfBlocks(), 40);
        vector.init(kxFunc("ntksF_8u16s"), kxDst);
        EXPECT_EQ(vector.type(), kx16s);
        EXPECT_EQ(psSumOfBlocks(), 0);
        EXPECT_TRUE(vector.createVector(5));
        EXPECT_EQ(kxVector(kxFunc("ntksF_8u16s"), 1).type(), kx8u);
    }
    EXPECT_EQ(psSumOfBlocks(), 0) << "a vector that ends releases its data";

    kxVector late(kx8u);
    late.createVector(100);
    late.reserveCopy();
    psFreeAll();
}

// What a broken-off test held is released for it; its vectors must not take the next owner's data.
TEST(Vector, AForgottenBlockIsNotReleasedForItsNextOwner) {
    kxVector forgetful(kx8u), next(kx8u);
    g_vectorShift = 0;
    forgetful.createVector(4000);
    psFree(forgetful.data());
    g_vectorShift = 0;
    next.createVector(4000); // the allocator gives the same address
    forgetful.deleteVector();
    EXPECT_TRUE(psMallocInfo(next.data()));
    EXPECT_EQ(forgetful.data(), nullptr);
}

TEST(Vector, FailuresAreReportedAndLeaveItEmpty) {
    const struct {
        kxType type;
        int len;
        const char* size;
    } cases[] = {{kx64fc, INT_MAX, "34359738352"}, {kx8u, -5, "-5"}, {kxUndef, 4, "0"}};
    for (const auto& c : cases) {
        const Captured captured(PS_OUT_ERR);
        kxVector vector(c.type);
        EXPECT_FALSE(vector.createVector(c.len));
        EXPECT_EQ(vector.data(), nullptr);
        EXPECT_EQ(vector.objectSize(), 0);
        const std::string start = std::string("-- Memory fail: can't allocate ") + c.size + " ";
        EXPECT_EQ(captured.text().substr(0, start.size()), start);
    }
}

TEST(Vector, AlignmentCountsBytesOrElements) {
    const struct {
        bool byByte;
        int n;
        unsigned below;
    } cases[] = {{true, 0, 3}, {false, 0, 12}, {true, 2, 6}, {false, 2, 6}};
    psSetVectorAlign(3);
    for (const auto& c : cases) {
        psSetAlignByByte(c.byByte);
        g_vectorNum = 0;
        kxVector vector(kx32s);
        EXPECT_TRUE(vector.createVectorExt(9, c.n, SET_SEQUENCE, -4, 1));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(vector.data()) % 64, 64 - c.below);
        EXPECT_EQ(values(vector), "-4 -3 -2 -1 0 1 2 3 4") << "misaligned elements";
    }
    psSetVectorAlign(0);
    psSetAlignByByte(true);
}

TEST(Vector, ReservedCopyBringsTheDataBack) {
    psFreeAll();
    kxVector vector(kx8u);
    EXPECT_TRUE(vector.reserveCopy()) << "nothing to copy";
    vector.createVector(3, SET_SEQUENCE, 1, 1);
    EXPECT_TRUE(vector.reserveCopy());
    void* tag = nullptr;
    psMallocFirst();
    EXPECT_NE(psMallocNext(nullptr, &tag), nullptr);
    EXPECT_EQ(tag, MEM_OBJECT_IS_SUBOBJECT) << "dumps pass it over";
    vector.setConst(9);
    vector.setReservedCopy();
    EXPECT_EQ(values(vector), "1 2 3");
    vector.setConst(8);
    EXPECT_TRUE(vector.reserveCopy()) << "anew";
    vector.setConst(9);
    vector.setReservedCopy();
    EXPECT_EQ(values(vector), "8 8 8");
    EXPECT_EQ(psSumOfBlocks(), 6);
    vector.deleteReservedCopy();
    EXPECT_EQ(psSumOfBlocks(), 3);
    vector.setConst(1);
    vector.setReservedCopy();
    EXPECT_EQ(values(vector), "1 1 1");
    EXPECT_TRUE(vector.reserveCopy());
    vector.deleteVector();
    EXPECT_EQ(psSumOfBlocks(), 0) << "the copy goes with the data";
}

TEST(Vector, PlainFills) {
    const struct {
        kxType type;
        int len;
        int mode;
        double a, b;
        const char* values;
    } cases[] = {
        {kx8u, 3, SET_NONE, 5, 5, "0 0 0"},
        {kx8u, 2, SET_CONST, 3.9, 0, "3 3"},
        {kx8u, 2, SET_CONST, 1e9, 0, "255 255"},
        {kx8s, 1, SET_CONST, -1e9, 0, "-128"},
        {kx32s, 1, SET_CONST, NAN, 0, "0"},
        {kx64u, 1, SET_CONST, 1e30, 0, "1.8446744073709552e+19"},
        {kx16sc, 2, SET_CONST, -1.5, 7, "-1,7 -1,7"},
        {kx8u, 4, SET_SEQUENCE, 254, 1, "254 255 0 1"},
        {kx8s, 3, SET_SEQUENCE, 127, 1, "127 -128 -127"},
        {kx64f, 3, SET_SEQUENCE, 1, -0.25, "1 0.75 0.5"},
        {kx32fc, 2, SET_SEQUENCE, 1, 2, "1,0 3,0"},
        {kx16s, 1, SET_MIN, 0, 0, "-32768"},
        {kx32sc, 1, SET_MAX, 0, 0, "2147483647,2147483647"},
        {kx64s, 1, SET_MIN, 0, 0, "-9.2233720368547758e+18"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(filled(c.type, c.len, static_cast<SetMode>(c.mode), c.a, c.b), c.values)
            << typeToString(c.type).c_str() << " mode " << c.mode;
    }
    kxVector one(kx8u);
    one.createVector(3, SET_CONST, 1, 0);
    one.setIndex(1, SET_MAX, 0, 0);
    EXPECT_EQ(values(one), "1 255 1");
    kxVector complexOnes(kx32fc);
    complexOnes.createVector(2);
    complexOnes.setSequence(0, 1, 5, -1);
    EXPECT_EQ(values(complexOnes), "0,5 1,4");
}

TEST(Vector, LimitsAreUsableNumbers) {
    EXPECT_EQ(SET_RANDOM, 6);
    for (const kxType type : allTypes) {
        const double low = kxVector::getMinValue(type), high = kxVector::getMaxValue(type);
        EXPECT_TRUE(std::isfinite(high - low)) << typeToString(type).c_str();
        EXPECT_EQ(low < 0, (type & (kxSignedBit | kxFloatBit)) != 0) << typeToString(type).c_str();
        EXPECT_GT(kxVector::getMinAbsValue(type), 0.0);
        if (type & kxFloatBit) {
            EXPECT_EQ(low, -high);
            EXPECT_TRUE(std::isnormal(kxVector::getMinAbsValue(type)));
        }
    }
    EXPECT_EQ(kxVector::getMaxValue(kxUndef), 0.0);
    EXPECT_EQ(kxVector(kx8s).minValue(), -128);
}

TEST(Vector, JaehneFill) {
    const struct {
        kxType type;
        double magnitude;
        const char* values;
    } cases[] = {
        // offset + magnitude * sin(pi/2 * n * n / 4), n = 0..3
        {kx8u, 100, "127 165 227 89"},
        {kx8u, 1000, "127 176 255 78"}, // cut to half the range: 127.5
        {kx8s, 100, "0 38 100 -38"},
        {kx16sc, 100, "0,0 38,38 100,100 -38,-38"},
        {kx8s, -1, "0 0 0 0"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(filled(c.type, 4, SET_JAEHNE, c.magnitude, 0), c.values)
            << typeToString(c.type).c_str() << " " << c.magnitude;
    }
    kxVector chirp(kx64f);
    chirp.createVector(100, SET_JAEHNE, 2.0, 0);
    double re, im;
    chirp.getIndex(7, re, im);
    EXPECT_DOUBLE_EQ(re, 2.0 * std::sin(1.5707963267948966 * 49 / 100));
}

TEST(Vector, RandomStaysInItsRangeAndFillsIt) {
    const struct {
        kxType type;
        double low, high, expectedLow, expectedHigh;
    } cases[] = {
        {kx8u, 0, 0, 0, 255},     {kx8s, 0, 0, -128, 127}, {kx8u, 10, 12, 10, 12},
        {kx8s, 3, -3, -3, 3},     {kx8u, 0.2, 3.9, 1, 3},  {kx8u, 0.2, 0.9, 0, 0},
        {kx8u, -50, 300, 0, 255}, {kx8sc, -2, 2, -2, 2},
    };
    for (const auto& c : cases) {
        kxVector vector(c.type);
        vector.createVector(20000, SET_RANDOM, c.low, c.high);
        std::set<double> seen;
        for (int i = 0; i < vector.size(); ++i) {
            double re, im;
            vector.getIndex(i, re, im);
            seen.insert(re);
        }
        EXPECT_EQ(*seen.begin(), c.expectedLow) << typeToString(c.type).c_str() << c.low;
        EXPECT_EQ(*seen.rbegin(), c.expectedHigh) << typeToString(c.type).c_str() << c.low;
        EXPECT_EQ(seen.size(), c.expectedHigh - c.expectedLow + 1);
    }
}

// Every type over its default range: both halves are met about equally often.
TEST(Vector, RandomCoversTheDefaultRangeEvenly) {
    for (const kxType type : allTypes) {
        kxVector vector(type);
        vector.createVector(10000, SET_RANDOM, 0, 0);
        const double middle = (vector.minValue() + vector.maxValue()) / 2;
        int upper = 0;
        for (int i = 0; i < vector.size(); ++i) {
            double re, im;
            vector.getIndex(i, re, im);
            EXPECT_TRUE(re >= vector.minValue() && re <= vector.maxValue());
            upper += re > middle ? 1 : 0;
        }
        EXPECT_NEAR(upper, 5000, 300) << typeToString(type).c_str();
    }
}

TEST(Vector, RandomDataFollowTheSeed) {
    kxVector a(kx8u), b(kx8u), c(kx8u);
    kxVector::m_seed = kxVector::defaultSeed;
    a.createVector(64, SET_RANDOM, 0, 0);
    b.createVector(64, SET_RANDOM, 0, 0);
    kxVector::m_seed = 7;
    c.createVector(64, SET_RANDOM, 0, 0);
    EXPECT_EQ(values(a), values(c)) << "each test sees the same data";
    EXPECT_NE(values(a), values(b)) << "the vectors of a test differ";
    const unsigned before = kxVector::m_seed;
    b.setRandom(0, 255, 7);
    EXPECT_EQ(values(b), values(a));
    EXPECT_EQ(kxVector::m_seed, before);
}

TEST(Vector, TextColumns) {
    const struct {
        kxType type;
        double re, im;
        const char* text;
    } cases[] = {
        {kx8u, 255, 0, " 255 255"},
        {kx16u, 65535, 0, " 65535 65535"},
        {kx32u, 4294967295.0, 0, " 4294967295 4294967295"},
        {kx8s, -128, 0, " -128 -128"},
        {kx16s, -32768, 0, " -32768 -32768"},
        {kx32s, -2147483648.0, 0, " -2147483648 -2147483648"},
        {kx64u, 5, 0, "                       5                       5"},
        {kx64s, -5, 0, "                      -5                      -5"},
        {kx32f, 0.1, 0, "           0.1           0.1"},
        {kx64f, -1.0 / 3, 0, "     -0.333333333333     -0.333333333333"},
        {kx16uc, 1, 65535, " (     1, 65535) (     1, 65535)"},
        {kx8sc, -1, 2, " (   -1,    2) (   -1,    2)"},
        {kx16sc, -1, 2, " (     -1,      2) (     -1,      2)"},
        {kx32sc, -1, 2, " (          -1,           2) (          -1,           2)"},
        {kx64sc, 1, 2,
         " (                       1,                       2)"
         " (                       1,                       2)"},
        {kx32fc, 1.5, -2, " (           1.5,            -2) (           1.5,            -2)"},
        {kx64fc, 1e-300, 2,
         " (              1e-300,                   2)"
         " (              1e-300,                   2)"},
    };
    for (const auto& c : cases) {
        kxVector vector(c.type);
        vector.createVector(2, SET_CONST, c.re, c.im);
        EXPECT_STREQ(vector.getString().c_str(), c.text) << typeToString(c.type).c_str();
    }
    EXPECT_STREQ(kxVector::getByteString("\x01\xff\x7f", 3).c_str(), " 01 FF 7F");
    EXPECT_STREQ(kxVector::getByteString("", 0).c_str(), "");
    // Three columns a byte are more than a string holds.
    EXPECT_EQ(kxVector::getByteString("", 1431655767).length(), 0);
    EXPECT_STREQ(kxVector(kx8u).getString().c_str(), "");
    EXPECT_STREQ(kxVector::getDataString(kxUndef, "x", 1).c_str(), "");
}

// Bounded loosely: it fails when a fill or a text copies all it has for every element.
TEST(Vector, LargeVectorsAreQuick) {
    kxVector vector(kx8u);
    EXPECT_TRUE(vector.createVector(1 << 20, SET_RANDOM, 0, 0));
    const psString text = vector.getString();
    EXPECT_EQ(text.length(), 4 << 20);
}

} // namespace

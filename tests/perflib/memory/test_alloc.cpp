#include "psalloc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "captured.h"
#include "psblockspace.h"

namespace {

std::uintptr_t addressOf(const void* p) {
    return reinterpret_cast<std::uintptr_t>(p);
}

std::string hex(const void* p) {
    return psText(p).c_str();
}

// Every test begins and ends without blocks and with the settings of the program's start.
class Alloc : public testing::Test {
protected:
    Alloc() { restore(); }
    ~Alloc() override { restore(); }

private:
    static void restore() {
        psFreeAll();
        psSetAlignMax(64);
        psSetVectorAlign(0);
        psSetVectorShift(512);
        psSetAlignSrc(true);
        psSetAlignByByte(true);
        g_vectorNum = g_vectorShift = 0;
    }
};

TEST_F(Alloc, PlacementArithmetic) {
    const struct {
        int shift, offset, unit;
        std::uintptr_t base, pointer;
    } cases[] = {
        {0, 0, 64, 0x10080, 0x10080},   {0, 1, 64, 0x10080, 0x100c0},
        {0, 512, 64, 0x10080, 0x10280}, {64, 0, 64, 0x10080, 0x10080},
        {-1, 0, 64, 0x10080, 0x100bf},  {-1, 0, 64, 0x100c0, 0x100bf},
        {-4, 0, 64, 0x10080, 0x100bc},  {-65, 512, 64, 0x10080, 0x102bf},
        {4, 0, 64, 0x10080, 0x10084},   {0, 8, 16, 0x10080, 0x10090},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(psBlockPointer(c.base, c.shift, c.offset, c.unit), c.pointer)
            << c.shift << " " << c.offset << " " << c.unit;
    }
    EXPECT_EQ(psBlockBase(0x10010, 64), 0x100c0u);
    EXPECT_EQ(psBlockBase(0x10000, 64), 0x100c0u);
    EXPECT_EQ(psBlockBase(0x0ffff, 64), 0x10080u);
    EXPECT_EQ(psBlockRequest(1000, -1, 512, 64), 1000 + 512 - 1 + 128 + 256);
    EXPECT_EQ(psBlockRequest(INT_MAX, 0, 512, 64), INT_MAX + 512LL + 128 + 256);
}

TEST_F(Alloc, VectorArithmetic) {
    EXPECT_EQ(psVectorMisalignment(4, 3, true, 0), -12);
    EXPECT_EQ(psVectorMisalignment(4, 3, true, 1), 0) << "only the first of a combination";
    EXPECT_EQ(psVectorMisalignment(4, 3, false, 1), -12);
    const int steps[][3] = {
        {0, 512, 512}, {32256, 512, 0}, {32255, 512, 32767}, {64, -512, 0}, {32767, INT_MAX, 0}};
    for (const auto& [current, step, next] : steps) {
        EXPECT_EQ(psNextVectorShift(current, step), next);
    }
}

// Blocks of all sizes and placements can be written from end to end (the address sanitizer
// watches) and still be freed, so that the hidden pointer was not overwritten.
TEST_F(Alloc, BlocksAreAlignedAndUsable) {
    for (const int size : {0, 1, 63, 64, 1000, 100000}) {
        for (const int shift : {0, -1, -8, -63, 17, 63}) {
            for (const int offset : {0, 5, 512, 32256}) {
                char* const p = static_cast<char*>(psMalloc(size, shift, offset));
                ASSERT_NE(p, nullptr) << size << " " << shift << " " << offset;
                memset(p, 0xff, static_cast<size_t>(size));
                if (shift == 0) {
                    EXPECT_EQ(addressOf(p) % 64, 0u);
                } else if (shift < 0 && offset % 64 == 0) {
                    EXPECT_EQ(addressOf(p) % 64, 64u + static_cast<unsigned>(shift));
                }
                psFree(p);
            }
        }
    }
    EXPECT_EQ(psMallocFirst(), nullptr);
}

TEST_F(Alloc, ImpossibleSizesAreReported) {
    const int cases[][2] = {{-1, 0}, {10, INT_MIN}, {10, -700}, {10, -300}};
    for (const auto& [size, offset] : cases) {
        const Captured captured(PS_OUT_ERR);
        EXPECT_EQ(psMalloc(size, 0, offset), nullptr);
        EXPECT_EQ(captured.text(),
                  "-- Memory fault: can't allocate " + std::to_string(size) + " bytes\n");
    }
}

// A misaligned block of a large unit may come to lie before what the system gave, depending on the
// address it gave.
TEST_F(Alloc, BlocksOutsideTheSystemsBlockAreRejected) {
    const struct {
        std::uintptr_t raw;
        int size, shift, offset, unit;
        bool fits;
    } cases[] = {
        {0x10010, 1000, 0, 0, 64, true},        {0x10010, 1000, -63, 0, 64, true},
        {0x20010, 1000, -4095, 0, 4096, false}, {0x21010, 1000, -4095, 0, 4096, true},
        {0x10010, 1000, 0, -300, 64, false},    {0x10010, 0, 0, -64, 64, true},
    };
    for (const auto& c : cases) {
        const std::uintptr_t base = psBlockBase(c.raw, c.unit);
        const std::uintptr_t pointer = psBlockPointer(base, c.shift, c.offset, c.unit);
        const long long request = psBlockRequest(c.size, c.shift, c.offset, c.unit);
        EXPECT_EQ(psBlockFits(pointer, c.size, base, c.raw, request), c.fits)
            << std::hex << c.raw << " " << pointer;
    }
    EXPECT_TRUE(psBlockFits(0x10080, 100, 0x10080, 0x10000, 228));
    EXPECT_FALSE(psBlockFits(0x10080, 101, 0x10080, 0x10000, 228));
    EXPECT_TRUE(psBlockFits(0x10008, 0, 0x10080, 0x10000, 228));
    EXPECT_FALSE(psBlockFits(0x10007, 0, 0x10080, 0x10000, 228)) << "on the hidden pointer";
}

TEST_F(Alloc, WalkGoesInAllocationOrder) {
    int object;
    void* stored = nullptr;
    void* const a = psMalloc(10, 0, 0, &object);
    void* const b = psMalloc(stored, 20);
    void* const c = psMalloc(30, 0, 0, MEM_OBJECT_IS_BUFFER);
    EXPECT_EQ(stored, b);
    EXPECT_EQ(psSumOfBlocks(), 60);

    int size = 0;
    void* tag = nullptr;
    EXPECT_EQ(psMallocFirst(&size, &tag), a);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(tag, &object);
    psFree(b); // the walk stands on it
    EXPECT_EQ(psMallocNext(&size, &tag), c);
    EXPECT_EQ(size, 30);
    EXPECT_EQ(tag, MEM_OBJECT_IS_BUFFER);
    EXPECT_EQ(psMallocNext(), nullptr);

    EXPECT_TRUE(psMallocInfo(c, &size));
    EXPECT_FALSE(psMallocInfo(b, &size, &tag));
    EXPECT_EQ(size, 30) << "unchanged for an unknown block";
    psFreeAll();
    EXPECT_EQ(psMallocFirst(&size, &tag), nullptr);
    EXPECT_EQ(psMallocNext(), nullptr);
    EXPECT_FALSE(psMallocInfo(c));
    EXPECT_EQ(psSumOfBlocks(), 0);
}

TEST_F(Alloc, UnknownPointersAreIgnored) {
    int local = 5;
    psFree(&local); // without a list
    void* const p = psMalloc(16);
    psFree(&local);
    psFree(nullptr);
    psFree(static_cast<char*>(p) + 1);
    EXPECT_TRUE(psMallocInfo(p));
    psFree(p);
    psFree(p);
    EXPECT_FALSE(psMallocInfo(p));
}

TEST_F(Alloc, TraceLines) {
    const Captured captured(PS_OUT_TRACE);
    char* const p = static_cast<char*>(psMalloc(24, 0, 64));
    const std::string info =
        "size:24  address:" + hex(p - 64) + "  alignedPointer:" + hex(p) + "\n";
    psFree(p);
    psFree(p);
    EXPECT_EQ(captured.text(), " - psMalloc: " + info + " - psFree: " + info + " - psFree: \n");
}

TEST_F(Alloc, VectorsOfACombinationAreSpread) {
    for (int round = 0; round < 70; ++round) {
        const int shift = round % 64 * 512;
        EXPECT_EQ(g_vectorShift, shift);
        char* const p = static_cast<char*>(psAllocateVector(100, 2));
        void* raw;
        memcpy(&raw, p - shift - 128, sizeof raw);
        EXPECT_LE(addressOf(p) - static_cast<unsigned>(shift), addressOf(raw) + 128 + 64);
        psFree(p);
    }
}

TEST_F(Alloc, VectorsAreMisalignedAsTheSessionSays) {
    psSetVectorAlign(3);
    const struct {
        bool firstOnly;
        unsigned first, second;
    } cases[] = {{true, 64 - 6, 0}, {false, 64 - 6, 64 - 6}};
    for (const auto& c : cases) {
        psSetAlignSrc(c.firstOnly);
        g_vectorNum = 0;
        EXPECT_EQ(addressOf(psAllocateVector(100, 2)) % 64, c.first);
        EXPECT_EQ(addressOf(psAllocateVector(100, 2)) % 64, c.second);
    }
    void* tag = nullptr;
    int object;
    EXPECT_TRUE(psMallocInfo(psAllocateVector(100, 2), nullptr, &tag));
    EXPECT_EQ(tag, MEM_OBJECT_IS_BUFFER);
    EXPECT_TRUE(psMallocInfo(psAllocateVector(100, 2, &object), nullptr, &tag));
    EXPECT_EQ(tag, &object);
    EXPECT_NE(MEM_OBJECT_IS_BUFFER, MEM_OBJECT_IS_SUBOBJECT);
}

// Whatever the heap held before, and in both processes of a comparison alike.
TEST_F(Alloc, AlignedToPagesBlocksLieAtTheSamePlaceOfTheirPages) {
    constexpr std::uintptr_t page = 4096;
    psAlignSpacesToPages(true);
    const std::uintptr_t place = addressOf(psMalloc(3000, 512, 6)) % page;
    for (const size_t before : {16, 100, 720, 5000}) {
        char* const held = static_cast<char*>(malloc(before));
        char* const p = static_cast<char*>(psMalloc(3000, 512, 6));
        EXPECT_EQ(addressOf(p) % page, place);
        EXPECT_TRUE(std::all_of(p, p + 3000, [](char byte) { return byte == 0; }));
        std::memset(p, 'x', 3000); // for the next block at this place
        psFree(p);
        free(held);
    }
    psAlignSpacesToPages(false);
}

TEST_F(Alloc, Settings) {
    psSetAlignMax(32);
    EXPECT_EQ(ALIGN_BYTES, 32);
    EXPECT_EQ(ALIGN_MASK, -32);
    EXPECT_EQ(psSetVectorAlign(70), 2);
    EXPECT_EQ(psGetVectorAlign(), 6);
    psSetAlignMax(48);
    psSetAlignMax(0);
    EXPECT_EQ(PS_ALIGN_MAX, 32) << "no power of two";
    void* const p = psMalloc(1, 0, 1);
    EXPECT_EQ(addressOf(p) % 32, 0u);
}

} // namespace

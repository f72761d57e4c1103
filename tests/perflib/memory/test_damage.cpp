#include "psdamage.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "psobject.h"

namespace {

char* bytes(void* p) {
    return static_cast<char*>(p);
}

class Damage : public testing::Test {
protected:
    Damage() { restore(); }
    ~Damage() override { restore(); }

private:
    static void restore() {
        psSetGuard(psGuard::none);
        psFreeAll();
        psTakeDamage();
    }
};

class Named : public psObject {
public:
    psString objectInfo() const override { return "Vector 8u len=100"; }
};

TEST_F(Damage, NoneByWritingTheBlockItself) {
    for (const psGuard guard : {psGuard::none, psGuard::pagesAfter, psGuard::pagesBefore}) {
        psSetGuard(guard);
        for (const int size : {0, 1, 63, 4096, 100000}) {
            for (const int shift : {0, -1, -63, 17}) {
                for (const int offset : {0, 5, 512, 32256}) {
                    void* const p = psMalloc(size, shift, offset);
                    ASSERT_NE(p, nullptr);
                    memset(p, 0, static_cast<size_t>(size));
                    EXPECT_TRUE(psTakeDamage().empty()) << size << " " << shift << " " << offset;
                    psFree(p);
                    EXPECT_TRUE(psTakeDamage().empty()) << size << " " << shift << " " << offset;
                }
            }
        }
    }
}

// Of three blocks the middle one is left by so many bytes, over its end, or under its begin.
TEST_F(Damage, IsFoundInItsBlockWithSideAndDistance) {
    for (const int size : {0, 1, 63, 1000, 200000}) {
        for (const int count : {1, 8, 200, 1000, psMarginBytes}) {
            for (const bool isOver : {true, false}) {
                for (const int offset : {0, 512, 5120}) {
                    void* const before = psMalloc(64);
                    char* const p = bytes(psMalloc(size, -1, offset));
                    void* const after = psMalloc(64);
                    memset(isOver ? p + size : p - count, 0, static_cast<size_t>(count));
                    const psList<psBlockDamage> found = psTakeDamage();
                    ASSERT_EQ(found.count(), 1) << size << " " << count << " " << isOver;
                    const psBlockDamage damage = *found.begin();
                    EXPECT_EQ(damage.place, 1);
                    EXPECT_EQ(damage.size, size);
                    EXPECT_EQ(damage.over, isOver ? count : 0);
                    EXPECT_EQ(damage.under, isOver ? 0 : count);
                    EXPECT_TRUE(psTakeDamage().empty()) << "told twice";
                    for (void* block : {before, static_cast<void*>(p), after}) {
                        psFree(block);
                    }
                    EXPECT_TRUE(psTakeDamage().empty()) << "told again when released";
                }
            }
        }
    }
}

TEST_F(Damage, IsFoundFarFromTheBlockWithoutAnyNextToIt) {
    char* const p = bytes(psMalloc(100));
    p[100 + 999] = 0;
    p[-1000] = 0;
    const psList<psBlockDamage> found = psTakeDamage();
    ASSERT_EQ(found.count(), 1);
    EXPECT_STREQ(psDamageText(*found.begin()).c_str(),
                 "block 0 (100 bytes): 1000 bytes under its begin, 1000 bytes over its end");
}

TEST_F(Damage, OfReleasedBlocksIsKept) {
    void* const first = psMalloc(10);
    char* const second = bytes(psMalloc(20));
    second[20] = 0;
    psFree(first);
    psFree(second);
    const psList<psBlockDamage> found = psTakeDamage();
    ASSERT_EQ(found.count(), 1);
    EXPECT_STREQ(psDamageText(*found.begin()).c_str(), "block 1 (20 bytes): 1 byte over its end");
    EXPECT_TRUE(psTakeDamage().empty());
}

TEST_F(Damage, NamesTheObjectOfALiveBlock) {
    Named object;
    bytes(psMalloc(100, 0, 0, &object))[100] = 0;
    bytes(psMalloc(100, 0, 0, MEM_OBJECT_IS_BUFFER))[100] = 0;
    const psList<psBlockDamage> found = psTakeDamage();
    ASSERT_EQ(found.count(), 2);
    EXPECT_STREQ(found.front().name.c_str(), "Vector 8u len=100");
    EXPECT_TRUE(found.back().name.empty());
}

// All that lies within a margin of any of the blocks is destroyed, what the allocator stored there
// included.
TEST_F(Damage, SparesTheAllocator) {
    constexpr int blocks = 20;
    char* pointers[blocks];
    for (char*& p : pointers) {
        p = bytes(psMalloc(24));
    }
    for (char* p : pointers) {
        memset(p - 1000, 0xff, 1000 + 24 + 1000);
    }
    int walked = 0;
    int size = 0;
    for (void* p = psMallocFirst(&size); p; p = psMallocNext(&size)) {
        EXPECT_EQ(p, pointers[walked++]);
        EXPECT_EQ(size, 24);
    }
    EXPECT_EQ(walked, blocks);
    for (char* p : pointers) {
        psFree(p);
    }
    EXPECT_EQ(psTakeDamage().count(), blocks);
    psFree(psMalloc(100000));
    EXPECT_TRUE(psTakeDamage().empty());
}

// The kernel reads one byte there.
bool hasAccess(const char* p) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const bool wasRead = write(ends[1], p, 1) == 1;
    close(ends[0]);
    close(ends[1]);
    return wasRead;
}

// Aligned as without a guard, and without access from less than one or two units away on.
TEST_F(Damage, GuardPagesLieBesideTheBlock) {
    for (const int size : {1, 64, 100, 4096, 65536, 100001}) {
        for (const int shift : {0, -1, -2, -63}) {
            for (const int offset : {0, 512, 32256}) {
                const int most = shift == 0 ? 63 : 127;
                const auto residue = static_cast<std::uintptr_t>(-shift) % 64;
                psSetGuard(psGuard::pagesAfter);
                char* p = bytes(psMalloc(size, shift, offset));
                EXPECT_EQ((reinterpret_cast<std::uintptr_t>(p) + residue) % 64, 0u);
                EXPECT_TRUE(hasAccess(p) && hasAccess(p + size - 1));
                EXPECT_FALSE(hasAccess(p + size + most)) << size << " " << shift << " " << offset;
                EXPECT_EQ(hasAccess(p + size), (reinterpret_cast<std::uintptr_t>(p) +
                                                static_cast<std::uintptr_t>(size)) %
                                                       4096 !=
                                                   0);
                psFree(p);

                psSetGuard(psGuard::pagesBefore);
                p = bytes(psMalloc(size, shift, offset));
                EXPECT_EQ((reinterpret_cast<std::uintptr_t>(p) + residue) % 64, 0u);
                EXPECT_TRUE(hasAccess(p) && hasAccess(p + size - 1));
                EXPECT_FALSE(hasAccess(p - most - 1)) << size << " " << shift << " " << offset;
                psFree(p);
            }
        }
    }
}

// Between the end of a block and the page.
TEST_F(Damage, IsFoundBesideGuardPagesToo) {
    psSetGuard(psGuard::pagesAfter);
    char* p = bytes(psMalloc(100));
    p[100] = 0;
    EXPECT_EQ(psTakeDamage().front().over, 1);
    psSetGuard(psGuard::pagesBefore);
    p = bytes(psMalloc(100, -1));
    p[-1] = 0;
    EXPECT_EQ(psTakeDamage().front().under, 1);
}

TEST_F(Damage, GuardNames) {
    psGuard guard = psGuard::none;
    for (const char* unknown : {"pages", "", "PAGES-AFTER", "pages-after "}) {
        EXPECT_FALSE(psGuardFromText(unknown, guard)) << unknown;
    }
    EXPECT_EQ(guard, psGuard::none);
    EXPECT_TRUE(psGuardFromText("pages-after", guard));
    EXPECT_EQ(guard, psGuard::pagesAfter);
    EXPECT_TRUE(psGuardFromText("pages-before", guard));
    EXPECT_EQ(guard, psGuard::pagesBefore);
}

} // namespace

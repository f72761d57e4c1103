// The largest cache, from recorded and invented registers.
#include "core/cachesize.h"

#include <gtest/gtest.h>

#include <climits>
#include <map>

namespace {

using Leaves = std::map<std::pair<Ntk32u, Ntk32u>, ntk::Registers>;

struct Machine {
    const char* name;
    Leaves leaves;
    int maxCacheBytes;
};

const Leaves* s_leaves = nullptr;

ntk::Registers recorded(Ntk32u leaf, Ntk32u subleaf) {
    const auto found = s_leaves->find({leaf, subleaf});
    return found == s_leaves->end() ? ntk::Registers{} : found->second;
}

Ntk64u noStates() {
    return 0;
}

// A description that never ends, as of a broken hypervisor: ever larger caches of whole KiB.
ntk::Registers endless(Ntk32u leaf, Ntk32u subleaf) {
    return leaf == 0 ? ntk::Registers{4, 0, 0, 0}
                     : ntk::Registers{0x21, 0x0000003f, 16 * subleaf + 15, 0};
}

const Machine machines[] = {
    {"leaf 4, recorded on a server",
     {{{0, 0}, {0x1c, 0, 0, 0}},
      {{4, 0}, {0x04000121, 0x02c0003f, 0x0000003f, 0}},
      {{4, 1}, {0x04000122, 0x01c0003f, 0x0000003f, 0}},
      {{4, 2}, {0x04000143, 0x03c0003f, 0x000007ff, 0}},
      {{4, 3}, {0x04004163, 0x04c0003f, 0x00033fff, 0}}},
     260 << 20},
    {"leaf 4 empty, extended list",
     {{{0, 0}, {0x10, 0, 0, 0}},
      {{0x80000000, 0}, {0x80000020, 0, 0, 0}},
      {{0x80000001, 0}, {0, 0, 0x00400000, 0}},
      {{0x8000001d, 0}, {0x00004121, 0x01c0003f, 0x0000003f, 0}},
      {{0x8000001d, 1}, {0x00004143, 0x01c0003f, 0x000003ff, 0}},
      {{0x8000001d, 2}, {0x0001c163, 0x03c0003f, 0x00003fff, 0}}},
     16 << 20},
    {"an extended list without topology extensions does not count",
     {{{0x80000000, 0}, {0x80000020, 0, 0, 0}},
      {{0x80000006, 0}, {0, 0, 0x02006140, 0}},
      {{0x8000001d, 0}, {0x00004143, 0x01c0003f, 0x00003fff, 0}}},
     512 << 10},
    {"no list, whole sizes with level 3",
     {{{0, 0}, {5, 0, 0, 0}},
      {{0x80000000, 0}, {0x8000001b, 0, 0, 0}},
      {{0x80000006, 0}, {0, 0, 0x02006140, 0x0030b140}}},
     6 << 20},
    {"a list without sizes",
     {{{0, 0}, {4, 0, 0, 0}},
      {{4, 0}, {0x121, 0, 0, 0}},
      {{0x80000000, 0}, {0x80000018, 0, 0, 0}},
      {{0x80000006, 0}, {0, 0, 0x02008140, 0}}},
     512 << 10},
    {"no list, level 2 only",
     {{{0, 0}, {1, 0, 0, 0}},
      {{0x80000000, 0}, {0x80000018, 0, 0, 0}},
      {{0x80000006, 0}, {0, 0, 0x02008140, 0}}},
     512 << 10},
    {"a list in a leaf above the largest does not count",
     {{{0, 0}, {2, 0, 0, 0}}, {{4, 0}, {0x21, 0x01c0003f, 0x3f, 0}}},
     0},
    {"no extended leaves: the answer to 0x80000000 is other data",
     {{{0, 0}, {2, 0, 0, 0}},
      {{0x80000000, 0}, {0x00000021, 0, 0, 0}},
      {{0x80000006, 0}, {0, 0, 0x02008140, 0}}},
     0},
    {"partitions count, the largest need not be the last",
     {{{0, 0}, {4, 0, 0, 0}},
      {{4, 0}, {0x21, 0x01c0103f, 0x0000003f, 0}},
      {{4, 1}, {0x21, 0x01c0003f, 0x0000003f, 0}}},
     64 << 10},
    {"more than an int holds",
     {{{0, 0}, {4, 0, 0, 0}}, {{4, 0}, {0x63, 0xffffffff, 0xffffffff, 0}}},
     INT_MAX},
};

TEST(CacheSize, FollowsTheDescriptionOfTheProcessor) {
    for (const Machine& machine : machines) {
        s_leaves = &machine.leaves;
        EXPECT_EQ(ntk::maxCacheSizeBytes({recorded, noStates}), machine.maxCacheBytes)
            << machine.name;
    }
}

TEST(CacheSize, EndsOnAnEndlessDescription) {
    EXPECT_EQ(ntk::maxCacheSizeBytes({endless, noStates}), 32 << 10);
}

} // namespace

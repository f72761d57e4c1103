#pragma once

#include <cstddef>
#include <cstdint>

// The memory that a block is placed in: what psBlockRequest asks for, between two margins. A
// faulty function that writes beyond its block meets a margin first, and not what the allocator
// or another block keeps there.

// Of each margin. A whole page, so that blocks lie to each other and to the pages as they would
// without margins.
constexpr int psMarginBytes = 4096;

// A page without access at one side of each block: a call that reads or writes there faults.
enum class psGuard { none, pagesAfter, pagesBefore };
// "pages-after" or "pages-before"; false, with guard unchanged, for anything else.
bool psGuardFromText(const char* text, psGuard& guard);
void psSetGuard(psGuard guard); // of the blocks to come; none at the start

// While this is on, each request begins at the same distance from a page's begin, whatever the heap
// holds: of two processes that are compared one would otherwise be faster by where its blocks
// happen to lie. Address randomisation does not even that out, as it moves the heap by whole pages.
void psAlignSpacesToPages(bool isAligned);

// Where a block is to be: the arguments of psMalloc and the alignment unit.
struct psPlacement {
    int size, shift, offset, unit;
};

struct psBlockSpace {
    void* start = nullptr;    // what the system gave; null: it had no memory
    std::size_t mapped = 0;   // bytes of the mapping; 0: from the heap
    std::uintptr_t first = 0; // the bytes with access
    std::uintptr_t end = 0;
    std::uintptr_t raw = 0; // where the request begins
};

// Zeroed. With a guard the block ends at the page, or begins there, as far as its alignment lets
// it: less than a unit away, or less than two if it is misaligned. raw may then be in the page
// without access.
psBlockSpace psTakeSpace(const psPlacement& placement);
void psReturnSpace(const psBlockSpace& space);

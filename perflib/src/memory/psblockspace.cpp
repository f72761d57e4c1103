#include "psblockspace.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "psalloc.h"

namespace {

constinit psGuard g_guard = psGuard::none;
constinit bool g_isAlignedToPages = false;

std::size_t pageBytes() {
    static const auto bytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return bytes;
}

std::size_t wholePages(std::size_t bytes) {
    return (bytes + pageBytes() - 1) / pageBytes() * pageBytes();
}

// Zeroed.
void* heapMemory(std::size_t bytes) {
    if (!g_isAlignedToPages) {
        return std::calloc(bytes, 1);
    }
    void* const start = std::aligned_alloc(pageBytes(), wholePages(bytes));
    return start ? std::memset(start, 0, bytes) : nullptr;
}

psBlockSpace heapSpace(std::size_t request) {
    const std::size_t bytes = request + 2UL * psMarginBytes;
    void* const start = heapMemory(bytes);
    if (start == nullptr) {
        return {};
    }
    const auto first = reinterpret_cast<std::uintptr_t>(start);
    return {start, 0, first, first + bytes, first + psMarginBytes};
}

// As far as the request can be moved towards the page without changing the alignment of the block.
std::intptr_t wayToPage(const psPlacement& placement, const psBlockSpace& space, bool isAfter) {
    const auto [size, shift, offset, unit] = placement;
    const std::uintptr_t pointer =
        psBlockPointer(psBlockBase(space.raw, unit), shift, offset, unit);
    const auto way = static_cast<std::intptr_t>(
        isAfter ? space.end - pointer - static_cast<std::uintptr_t>(size) : pointer - space.first);
    const int step = shift % unit == 0 ? unit : 2 * unit; // psBlockPointer clears bits below
    return way < 0 ? 0 : way / step * step;
}

psBlockSpace guardedSpace(const psPlacement& placement, std::size_t request, bool isAfter) {
    const std::size_t page = pageBytes();
    const std::size_t usable = wholePages(request + 2UL * psMarginBytes);
    void* const start =
        mmap(nullptr, usable + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) {
        return {};
    }
    char* const pages = static_cast<char*>(start);
    const auto first = reinterpret_cast<std::uintptr_t>(isAfter ? pages : pages + page);
    psBlockSpace space{start, usable + page, first, first + usable, first + psMarginBytes};
    if (mprotect(isAfter ? pages + usable : pages, page, PROT_NONE) != 0) {
        psReturnSpace(space);
        return {};
    }
    const std::intptr_t way = wayToPage(placement, space, isAfter);
    space.raw += static_cast<std::uintptr_t>(isAfter ? way : -way);
    return space;
}

} // namespace

bool psGuardFromText(const char* text, psGuard& guard) {
    if (std::strcmp(text, "pages-after") == 0) {
        guard = psGuard::pagesAfter;
        return true;
    }
    if (std::strcmp(text, "pages-before") == 0) {
        guard = psGuard::pagesBefore;
        return true;
    }
    return false;
}

void psSetGuard(psGuard guard) {
    g_guard = guard;
}

void psAlignSpacesToPages(bool isAligned) {
    g_isAlignedToPages = isAligned;
}

psBlockSpace psTakeSpace(const psPlacement& placement) {
    const auto [size, shift, offset, unit] = placement;
    const auto request = static_cast<std::size_t>(psBlockRequest(size, shift, offset, unit));
    return g_guard == psGuard::none
               ? heapSpace(request)
               : guardedSpace(placement, request, g_guard == psGuard::pagesAfter);
}

void psReturnSpace(const psBlockSpace& space) {
    if (space.mapped == 0) {
        std::free(space.start);
    } else {
        munmap(space.start, space.mapped);
    }
}

#include "psalloc.h"

#include <cstring>

#include "psdamage.h"
#include "psostream.h"
#include "pssettings.h"

static constexpr int defaultUnit = 64;

// Constants at the start, so that static initialisers of other files find them set.
constinit int PS_ALIGN_MAX = defaultUnit;
constinit int ALIGN_BYTES = defaultUnit;
constinit int ALIGN_MASK = -defaultUnit;
constinit int g_vectorNum = 0;
constinit int g_vectorShift = 0;

namespace {

// Where the request begins is stored this far before the base.
constexpr int rawSlotDistance = 128;
constexpr int spareBytes = 256;
constexpr int vectorShiftLimit = 32768;

char bufferTag, subobjectTag;

// Made by the first allocation; a plain pointer, so that static initialisers can allocate.
constinit AddressList* g_blocks = nullptr;

void trace(const char* what, const void* p) {
    if (g_ostrm.accepts(PS_TRACE)) {
        g_ostrm << PS_TRACE << what << g_blocks->memInfo(p) << "\n" << PS_END;
    }
}

void* track(std::uintptr_t base, std::uintptr_t result, int size, void* tag,
            const psBlockSpace& space) {
    if (g_blocks == nullptr) {
        g_blocks = new AddressList;
    }
    void* const p = reinterpret_cast<void*>(result);
    g_blocks->append({reinterpret_cast<void*>(base), p, size, tag, g_blocks->count(), space});
    psFillMargins(g_blocks->back());
    return p;
}

void* allocationFailure(int size) {
    g_ostrm << PS_ERR << "-- Memory fault: can't allocate " << size << " bytes\n" << PS_END;
    return nullptr;
}

// Fills size and tag where not null, and returns the pointer; null for no block.
void* describe(const Address* block, int* size, void** tag) {
    if (block == nullptr) {
        return nullptr;
    }
    if (size) {
        *size = block->size;
    }
    if (tag) {
        *tag = block->tag;
    }
    return block->pointer;
}

} // namespace

void* const MEM_OBJECT_IS_BUFFER = &bufferTag;
void* const MEM_OBJECT_IS_SUBOBJECT = &subobjectTag;

AddressList::~AddressList() {
    for (const Address& block : *this) {
        psReturnSpace(block.space);
    }
}

const Address* AddressList::find(const void* p) const {
    for (const Address& block : *this) {
        if (block.pointer == p) {
            return &block;
        }
    }
    return nullptr;
}

void AddressList::release(const void* p) {
    for (iterator i = begin(); i != end(); ++i) {
        if (i->pointer == p) {
            psKeepDamage(*i);
            psReturnSpace(i->space);
            const bool walkStandsHere = m_next == i;
            i = erase(i);
            m_next = walkStandsHere ? i : m_next;
            return;
        }
    }
}

psString AddressList::memInfo(const void* p) const {
    psString info;
    if (const Address* block = find(p)) {
        info << "size:" << block->size << "  address:" << block->base << "  alignedPointer:" << p;
    }
    return info;
}

const Address* AddressList::first() {
    m_next = begin();
    return next();
}

const Address* AddressList::next() {
    return m_next == end() ? nullptr : &*m_next++;
}

long long psBlockRequest(int size, int shift, int offset, int unit) {
    return static_cast<long long>(size) + offset + shift % unit + 2LL * unit + spareBytes;
}

std::uintptr_t psBlockBase(std::uintptr_t raw, int unit) {
    const auto bytes = static_cast<std::uintptr_t>(unit);
    return (raw + bytes + rawSlotDistance) & -bytes;
}

// Shift 0 rounds up to a multiple of unit. A negative shift -k leaves the low bits of unit - k set
// and clears the bit of unit as well, which may take the pointer below base.
std::uintptr_t psBlockPointer(std::uintptr_t base, int shift, int offset, int unit) {
    const std::intptr_t mask = shift % unit - unit;
    const std::intptr_t highest = static_cast<std::intptr_t>(base) + offset + unit - 1;
    return static_cast<std::uintptr_t>(highest & mask);
}

bool psBlockFits(std::uintptr_t pointer, int size, std::uintptr_t base, std::uintptr_t raw,
                 long long request) {
    return pointer >= base - rawSlotDistance + sizeof(void*) &&
           pointer + static_cast<std::uintptr_t>(size) <=
               raw + static_cast<std::uintptr_t>(request);
}

void* psMalloc(int size, int shift, int offset, void* tag) {
    const long long request = psBlockRequest(size, shift, offset, PS_ALIGN_MAX);
    if (size < 0 || request <= size) {
        return allocationFailure(size);
    }
    const psBlockSpace space = psTakeSpace({size, shift, offset, PS_ALIGN_MAX});
    if (space.start == nullptr) {
        return allocationFailure(size);
    }
    const std::uintptr_t base = psBlockBase(space.raw, PS_ALIGN_MAX);
    const std::uintptr_t result = psBlockPointer(base, shift, offset, PS_ALIGN_MAX);
    if (!psBlockFits(result, size, base, space.raw, request)) {
        psReturnSpace(space);
        return allocationFailure(size);
    }
    void* const p = track(base, result, size, tag, space);
    trace(" - psMalloc: ", p);
    return p;
}

void* psMalloc(void*& p, int size, int shift, int offset) {
    return p = psMalloc(size, shift, offset, nullptr);
}

void psFree(void* p) {
    if (g_blocks == nullptr) {
        return;
    }
    trace(" - psFree: ", p);
    g_blocks->release(p);
}

void psFreeAll() {
    delete g_blocks;
    g_blocks = nullptr;
}

bool psMallocInfo(const void* p, int* size, void** tag) {
    return g_blocks != nullptr && describe(g_blocks->find(p), size, tag) != nullptr;
}

void* psMallocFirst(int* size, void** tag) {
    return g_blocks == nullptr ? nullptr : describe(g_blocks->first(), size, tag);
}

void* psMallocNext(int* size, void** tag) {
    return g_blocks == nullptr ? nullptr : describe(g_blocks->next(), size, tag);
}

long long psSumOfBlocks() {
    long long sum = 0;
    if (g_blocks != nullptr) {
        for (const Address& block : *g_blocks) {
            sum += block.size;
        }
    }
    return sum;
}

void psForEachBlock(const std::function<void(const Address&)>& visit) {
    if (g_blocks != nullptr) {
        for (const Address& block : *g_blocks) {
            visit(block);
        }
    }
}

std::uintptr_t psSlotOf(const Address& block) {
    return reinterpret_cast<std::uintptr_t>(block.base) - rawSlotDistance;
}

void psStoreSlot(const Address& block) {
    if (psSlotOf(block) >= block.space.first) {
        std::memcpy(reinterpret_cast<void*>(psSlotOf(block)), &block.space.raw,
                    sizeof block.space.raw);
    }
}

bool psHasIntactSlot(const Address& block) {
    return psSlotOf(block) >= block.space.first &&
           std::memcmp(reinterpret_cast<const void*>(psSlotOf(block)), &block.space.raw,
                       sizeof block.space.raw) == 0;
}

int psVectorMisalignment(int n, int step, bool firstOnly, int vectorNum) {
    return firstOnly && vectorNum != 0 ? 0 : -(n * step);
}

int psNextVectorShift(int currentShift, int step) {
    const long long next = static_cast<long long>(currentShift) + step;
    return next < 0 || next >= vectorShiftLimit ? 0 : static_cast<int>(next);
}

void* psAllocateVector(int size, int n, void* tag) {
    const int shift =
        psVectorMisalignment(n, g_settings.vectorAlign, g_settings.alignSrcOnly, g_vectorNum++);
    void* const p = psMalloc(size, shift, g_vectorShift, tag ? tag : MEM_OBJECT_IS_BUFFER);
    g_vectorShift = psNextVectorShift(g_vectorShift, g_settings.vectorShiftStep);
    return p;
}

void psSetAlignMax(int unitBytes) {
    if (unitBytes > 0 && (unitBytes & (unitBytes - 1)) == 0) {
        PS_ALIGN_MAX = ALIGN_BYTES = unitBytes;
        ALIGN_MASK = -unitBytes;
    }
}

int psSetVectorAlign(int v) {
    g_settings.vectorAlign = v % PS_ALIGN_MAX;
    return v / PS_ALIGN_MAX;
}

int psGetVectorAlign() {
    return g_settings.vectorAlign;
}

void psSetVectorShift(int stepBytes) {
    g_settings.vectorShiftStep = stepBytes;
}

int psGetVectorShift() {
    return g_settings.vectorShiftStep;
}

void psSetAlignSrc(bool firstVectorOnly) {
    g_settings.alignSrcOnly = firstVectorOnly;
}

bool psGetAlignSrc() {
    return g_settings.alignSrcOnly;
}

void psSetAlignByByte(bool byByte) {
    g_settings.alignByByte = byByte;
}

bool psGetAlignByByte() {
    return g_settings.alignByByte;
}

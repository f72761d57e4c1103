#pragma once

#include <cstdint>
#include <functional>

#include "psblockspace.h"
#include "pslist.h"
#include "psstring.h"

// Aligned blocks: every buffer of a test comes from psMalloc, at a controlled alignment or
// misaligned on purpose, and is tracked until psFree, so that blocks can be summed, dumped and,
// at the end of the program, released if a test left them. Usable from any static initialiser.

// The tag says what the block holds: an object (its address), a raw buffer, or a part of an
// object that the object itself shows. Dumps pass over a null tag as over a part.
extern void* const MEM_OBJECT_IS_BUFFER;
extern void* const MEM_OBJECT_IS_SUBOBJECT;

// One live block.
struct Address {
    void* base;    // aligned; the 8 bytes 128 before it hold where the request begins
    void* pointer; // what the caller got
    int size;      // bytes asked for
    void* tag;
    int place = 0; // number of live blocks before it when it was allocated
    psBlockSpace space = {};
};

// The live blocks, oldest first. Owns them.
class AddressList : public psList<Address> {
public:
    AddressList() : m_next(end()) {}
    ~AddressList() override;
    AddressList(const AddressList&) = delete;
    AddressList& operator=(const AddressList&) = delete;

    const Address* find(const void* p) const; // null: p is no live block
    void release(const void* p);              // unknown pointers are ignored
    // "size:", "address:", "alignedPointer:" of the block p; empty for an unknown p.
    psString memInfo(const void* p) const;

    // The walk over all blocks; null at the end. Releasing blocks on the way is allowed.
    const Address* first();
    const Address* next();

private:
    iterator m_next;
};

// size bytes, aligned to PS_ALIGN_MAX when shift is 0; offset bytes further into the block. A
// negative shift -k (k below PS_ALIGN_MAX) gives an address k below a multiple of PS_ALIGN_MAX
// when offset is such a multiple. Null (reported) when there is no memory or the sizes are
// impossible. The caller releases the block with psFree.
void* psMalloc(int size, int shift = 0, int offset = 0, void* tag = nullptr);
void* psMalloc(void*& p, int size, int shift = 0, int offset = 0); // also stores the result in p
void psFree(void* p); // null and pointers not from psMalloc are ignored
void psFreeAll();

// Whether p is a live block; size and tag are filled where not null.
bool psMallocInfo(const void* p, int* size = nullptr, void** tag = nullptr);
// The blocks in allocation order, null at the end.
void* psMallocFirst(int* size = nullptr, void** tag = nullptr);
void* psMallocNext(int* size = nullptr, void** tag = nullptr);
long long psSumOfBlocks(); // bytes asked for by all live blocks
void psForEachBlock(const std::function<void(const Address&)>& visit); // must not release any

// The 8 bytes of a block that hold where its request begins: stored unless they are in a page
// without access. Nothing relies on them.
std::uintptr_t psSlotOf(const Address& block);
void psStoreSlot(const Address& block);
bool psHasIntactSlot(const Address& block);

// A block for a vector of the running test: misaligned by n times the vector alignment step, the
// first vector of a parameter combination only when the source alone is to be misaligned, and
// placed further into its block than the vector before it, so that the vectors of a test do not
// compete for the same cache sets. A null tag counts as MEM_OBJECT_IS_BUFFER.
void* psAllocateVector(int size, int n, void* tag = nullptr);
extern int g_vectorNum;   // vectors of this combination; reset to 0 before each
extern int g_vectorShift; // the offset in bytes of the next vector

// The alignment unit in bytes. psSetAlignMax ignores what is no power of two.
extern int PS_ALIGN_MAX;
extern int ALIGN_BYTES; // = PS_ALIGN_MAX
extern int ALIGN_MASK;  // = -PS_ALIGN_MAX
void psSetAlignMax(int unitBytes);
// Misalignment step of vectors: keeps v modulo the unit and returns v divided by it.
int psSetVectorAlign(int v);
int psGetVectorAlign();
void psSetVectorShift(int stepBytes); // how much further each vector is placed
int psGetVectorShift();
void psSetAlignSrc(bool firstVectorOnly);
bool psGetAlignSrc();
void psSetAlignByByte(bool byByte); // else the vector alignment counts elements
bool psGetAlignByByte();

// The arithmetic. unit is the alignment unit, a power of two; shift counts modulo unit, with sign.
long long psBlockRequest(int size, int shift, int offset, int unit); // bytes asked of the system
std::uintptr_t psBlockBase(std::uintptr_t raw, int unit);
std::uintptr_t psBlockPointer(std::uintptr_t base, int shift, int offset, int unit);
// Whether a block of size bytes at pointer lies in what the system gave at raw for this request,
// and behind the slot before base. Large units and negative offsets can lead out of it.
bool psBlockFits(std::uintptr_t pointer, int size, std::uintptr_t base, std::uintptr_t raw,
                 long long request);
int psVectorMisalignment(int n, int step, bool firstOnly, int vectorNum);
int psNextVectorShift(int currentShift, int step); // runs in 0..32767

// Reserved copies of all blocks of a test: made before a set-and-use measurement, written back
// before each of its calls.

#include <cstring>

#include "psalloc.h"
#include "psobject.h"
#include "pstest.h"

namespace {
struct BufferCopy {
    void* buffer;
    void* copy;
    int size;
};
psList<BufferCopy> g_copies;

bool isBuffer(const void* tag) { return tag == MEM_OBJECT_IS_BUFFER; }
bool isObject(const void* tag) {
    return tag && tag != MEM_OBJECT_IS_BUFFER && tag != MEM_OBJECT_IS_SUBOBJECT;
}

template <class Visit> void forEachObject(Visit visit) {
    void* tag = nullptr;
    for (void* p = psMallocFirst(nullptr, &tag); p; p = psMallocNext(nullptr, &tag)) {
        if (isObject(tag))
            visit(*static_cast<psObject*>(tag));
    }
}

void copyBuffer(void* buffer, int size) {
    void* copy = psMalloc(size, 0, 0, MEM_OBJECT_IS_SUBOBJECT);
    if (!copy)
        throw psException("Can't reserve the test buffers");
    memcpy(copy, buffer, static_cast<size_t>(size));
    g_copies.append({buffer, copy, size});
}
} // namespace

void* psTest::allocate(int size, int n, void* tag) { return psAllocateVector(size, n, tag); }

void psTest::deallocate(void* block) { psFree(block); }

void psTest::reserveAllVectors() {
    deleteReservedVectors();
    forEachObject([](psObject& object) {
        if (!object.reserveCopy())
            throw psException("Can't reserve the test vectors");
    });
    int size = 0;
    void* tag = nullptr;
    for (void* p = psMallocFirst(&size, &tag); p; p = psMallocNext(&size, &tag)) {
        if (isBuffer(tag))
            copyBuffer(p, size);
    }
}

void psTest::resetAllVectors() {
    forEachObject([](psObject& object) { object.setReservedCopy(); });
    for (const BufferCopy& c : g_copies)
        memcpy(c.buffer, c.copy, static_cast<size_t>(c.size));
}

void psTest::deleteReservedVectors() {
    forEachObject([](psObject& object) { object.deleteReservedCopy(); });
    for (const BufferCopy& c : g_copies)
        psFree(c.copy);
    g_copies.clear();
}

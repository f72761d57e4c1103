#include "psreserve.h"

#include <cstring>

#include <algorithm>

#include "psalloc.h"
#include "psexcept.h"
#include "psobject.h"

namespace {
struct BufferCopy {
    void* buffer;
    void* copy;
    int size;
};
psList<BufferCopy> g_copies;
psList<const psObject*> g_reserved; // the objects that may hold a copy

bool isBuffer(const void* tag) {
    return tag == MEM_OBJECT_IS_BUFFER;
}
bool isObject(const void* tag) {
    return tag && tag != MEM_OBJECT_IS_BUFFER && tag != MEM_OBJECT_IS_SUBOBJECT;
}

template <class Visit> void forEachObject(Visit visit) {
    void* tag = nullptr;
    for (void* p = psMallocFirst(nullptr, &tag); p; p = psMallocNext(nullptr, &tag)) {
        if (isObject(tag)) {
            visit(*static_cast<psObject*>(tag));
        }
    }
}

bool mayOwnCopy(const psObject* object) {
    return std::find(g_reserved.begin(), g_reserved.end(), object) != g_reserved.end();
}

void copyBuffer(void* buffer, int size) {
    void* copy = psMalloc(size, 0, 0, MEM_OBJECT_IS_SUBOBJECT);
    if (!copy) {
        throw psException("Can't reserve the test buffers");
    }
    memcpy(copy, buffer, static_cast<size_t>(size));
    g_copies.append({buffer, copy, size});
}
} // namespace

void psReserveBlocks() {
    psDropReservedBlocks();
    forEachObject([](psObject& object) {
        g_reserved.append(&object);
        if (!object.reserveCopy()) {
            throw psException("Can't reserve the test vectors");
        }
    });
    int size = 0;
    void* tag = nullptr;
    for (void* p = psMallocFirst(&size, &tag); p; p = psMallocNext(&size, &tag)) {
        if (isBuffer(tag)) {
            copyBuffer(p, size);
        }
    }
}

void psRestoreBlocks() {
    forEachObject([](psObject& object) { object.setReservedCopy(); });
    for (const BufferCopy& c : g_copies) {
        memcpy(c.buffer, c.copy, static_cast<size_t>(c.size));
    }
}

// After a fault a block may name an object in a frame that is gone: only objects that were there
// when the copies were made, and whose blocks still live, are asked.
void psDropReservedBlocks() {
    void* tag = nullptr;
    for (void* p = psMallocFirst(nullptr, &tag); p; p = psMallocNext(nullptr, &tag)) {
        if (isObject(tag) && mayOwnCopy(static_cast<psObject*>(tag))) {
            static_cast<psObject*>(tag)->deleteReservedCopy();
        }
    }
    g_reserved.clear();
    for (const BufferCopy& c : g_copies) {
        psFree(c.copy);
    }
    g_copies.clear();
}

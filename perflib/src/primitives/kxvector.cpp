#include "kxvector.h"

#include <climits>
#include <cstring>
#include <utility>

#include "psalloc.h"
#include "psostream.h"

// May run at exit, after psFreeAll.
kxVector::~kxVector() {
    deleteVector();
}

void kxVector::init(kxType type) {
    deleteVector();
    m_type = type;
}

bool kxVector::allocationFailure(long long bytes) const {
    g_ostrm << PS_ERR << "-- Memory fail: can't allocate " << bytes << " bytes for "
            << typeToString(m_type) << " vector\n"
            << PS_END;
    return false;
}

bool kxVector::allocateVector(int len, int n, void* tag) {
    deleteVector();
    const long long bytes = static_cast<long long>(len) * item();
    if (len < 0 || item() == 0 || bytes > INT_MAX) {
        return allocationFailure(bytes);
    }
    const int steps = n > 0 ? n : psGetAlignByByte() ? 1 : item();
    m_tag = tag ? tag : this;
    m_data = psAllocateVector(static_cast<int>(bytes), steps, m_tag);
    if (m_data == nullptr) {
        return allocationFailure(bytes);
    }
    m_length = len;
    return true;
}

bool kxVector::createVector(int len, int n) {
    return createVector(len, n, nullptr);
}

bool kxVector::createVector(int len, int n, void* tag) {
    if (!allocateVector(len, n, tag)) {
        return false;
    }
    std::memset(m_data, 0, static_cast<size_t>(objectSize()));
    return true;
}

bool kxVector::createVector(int len, SetMode mode, double a, double b) {
    return createVectorExt(len, 0, mode, a, b);
}

bool kxVector::createVectorExt(int len, int n, SetMode mode, double a, double b) {
    if (!createVector(len, n)) {
        return false;
    }
    setVector(mode, a, b);
    return true;
}

// The block may have been released behind the vector's back (at the end of a test that was broken
// off) and its address given to another vector since: the tag tells.
bool kxVector::ownsBlock() const {
    void* tag = nullptr;
    return psMallocInfo(m_data, nullptr, &tag) && tag == m_tag;
}

void kxVector::deleteVector() {
    if (ownsBlock()) {
        deleteReservedCopy();
        psFree(m_data);
    }
    m_data = m_reserved = nullptr;
    m_length = 0;
}

psString kxVector::objectInfo() const {
    psString info("Vector ");
    info << typeToString(m_type) << " len=" << m_length;
    return info;
}

const void* kxVector::getPointerAt(int i) const {
    return static_cast<const char*>(m_data) + static_cast<std::ptrdiff_t>(i) * item();
}

void* kxVector::getPointerAt(int i) {
    return const_cast<void*>(std::as_const(*this).getPointerAt(i));
}

// The copy is a part of the vector: the vector's own line in a dump is enough.
bool kxVector::reserveCopy() {
    if (m_data == nullptr) {
        return true;
    }
    if (m_reserved == nullptr) {
        m_reserved = psMalloc(objectSize(), 0, 0, MEM_OBJECT_IS_SUBOBJECT);
    }
    if (m_reserved == nullptr) {
        return false;
    }
    std::memcpy(m_reserved, m_data, static_cast<size_t>(objectSize()));
    return true;
}

void kxVector::setReservedCopy() {
    if (m_reserved != nullptr) {
        std::memcpy(m_data, m_reserved, static_cast<size_t>(objectSize()));
    }
}

void kxVector::deleteReservedCopy() {
    if (m_reserved != nullptr) {
        psFree(m_reserved);
        m_reserved = nullptr;
    }
}

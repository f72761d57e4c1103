#pragma once

#include "kxfunc.h"
#include "kxvector.h"
#include "pscacheiterator.h"
#include "pstest.h"

// Base of the tests of library primitives: judges library statuses, shows the test's memory blocks
// when data output is on, names the primitive's types in the table.
class kxTest : public psTest {
public:
    // The source path is cut to its file name; init may be null.
    kxTest(psCallFunc call, psCallFunc init, psLoopFunc loop, psStatFunc stat,
           const psString& function, const psString& source, const psString& info);

    psResult run() override;
    void funcToCstrm() override;
    psString typeNames() override { return m_func.typeName(); }
    void printAllMemoryBlocks(const psString& label) override;
    psString regInfo() override;

    virtual void printFirstDebugLine(const psString& label);
    virtual void printLastDebugLine(const psString& label);
    // object: null for a raw buffer of size bytes.
    virtual void printFirstBlockLine(int index, psObject* object, int size);
    virtual void printLastBlockLine(int index, psObject* object);
    virtual void printVectorBlock(kxVector* vector);
    virtual void printByteBlock(void* buffer, int size);

    // As for a length, for a size of width and height. image: whose bytes count; without one, all
    // blocks do.
    using psTest::regCacheParm;
    void regCacheParm(psIterator<NtkiSize>& size, psObject& image,
                      psCacheIterator::Setter setter = nullptr);
    void regCacheParm(psIterator<NtkiSize>& size, psCacheIterator::Setter setter = nullptr);

    const kxFunc& func() const { return m_func; }

    // What a library status means for the test: PS_OK for 0, PS_FUNC_FAIL for an error,
    // PS_FUNC_NOTE for a warning; a status that is not 0 is printed with the library's own text
    // and raises the running test's result. name: the function called; empty: not printed.
    static psResult checkStatus(int status, const psString& name);
    psResult checkStatus(int status) const { return checkStatus(status, m_func.name()); }
    // Whether the library left a length that is possible; one outside least to most is printed,
    // with what it is the length of, as an error of the function, and raises the result as one.
    static bool isPossible(long long length, long long least, long long most, const char* what,
                           const psString& function);

    static bool m_checkErrorsOnly; // warnings are passed over; cleared when a test starts

private:
    void regCacheSize(psIterator<NtkiSize>& size, psObject* image, psCacheIterator::Setter setter);
    void printBlock(int index, void* block, int size, void* tag);

    kxFunc m_func;
};

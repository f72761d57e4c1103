#include "kxtest.h"

#include "psalloc.h"
#include "psbase.h"
#include "pscstream.h"

bool kxTest::m_checkErrorsOnly = false;

kxTest::kxTest(psCallFunc call, psCallFunc init, psLoopFunc loop, psStatFunc stat,
               const psString& function, const psString& source, const psString& info)
    : psTest(call, init, loop, stat, function, source, info), m_func(function) {}

// Every test sees the same pseudo-random data, whichever ran before it.
psResult kxTest::run() {
    m_checkErrorsOnly = false;
    kxVector::m_seed = kxVector::defaultSeed;
    return psTest::run();
}

psResult kxTest::checkStatus(int status, const psString& name) {
    if (status == 0 || (status > 0 && m_checkErrorsOnly)) {
        return PS_OK;
    }
    const psResult result = status < 0 ? PS_FUNC_FAIL : PS_FUNC_NOTE;
    g_ostrm << psResultLevel(result) << (status < 0 ? "--NTK FAIL. " : "--NTK NOTE. ")
            << "status = " << status;
    if (!name.empty()) {
        g_ostrm << " in " << name;
    }
    const char* const text = ntk_GetStatusString ? ntk_GetStatusString(status) : "";
    g_ostrm << ": " << text << "\n" << PS_END;
    raiseResult(psResultAtLevel(result, g_ostrm.outLevel()));
    return result;
}

bool kxTest::isPossible(long long length, long long least, long long most, const char* what,
                        const psString& function) {
    if (length >= least && length <= most) {
        return true;
    }
    g_ostrm << psResultLevel(PS_FUNC_FAIL) << "--NTK FAIL. " << what << " = " << length << " in "
            << function << ": not within " << least << " to " << most << "\n"
            << PS_END;
    raiseResult(PS_FUNC_FAIL);
    return false;
}

void kxTest::regCacheParm(psIterator<NtkiSize>& size, psObject& image,
                          psCacheIterator::Setter setter) {
    regCacheSize(size, &image, setter);
}

void kxTest::regCacheParm(psIterator<NtkiSize>& size, psCacheIterator::Setter setter) {
    regCacheSize(size, nullptr, setter);
}

void kxTest::regCacheSize(psIterator<NtkiSize>& size, psObject* image,
                          psCacheIterator::Setter setter) {
    if (wantsCacheIterator()) {
        regCacheIterator(new psCacheIteratorSize(size, image, setter));
    } else {
        regParm(size);
    }
}

void kxTest::funcToCstrm() {
    g_cstrm << functionName() << m_func.typeName();
}

// The registering macro is of interest only where it is one of the harness's own.
psString kxTest::regInfo() {
    const psString text = psTest::regInfo();
    const psString by = " by " + info().macro + " macro";
    const int at = info().macro.contains("PS_") ? psString::npos : text.find(by);
    return at == psString::npos ? text : text.substr(0, at) + text.substr(at + by.length());
}

void kxTest::printAllMemoryBlocks(const psString& label) {
    if (!g_ostrm.accepts(PS_DATA)) {
        return;
    }
    g_ostrm << PS_DATA;
    printFirstDebugLine(label);
    int index = 0;
    int size = 0;
    void* tag = nullptr;
    for (void* p = psMallocFirst(&size, &tag); p; p = psMallocNext(&size, &tag)) {
        if (tag && tag != MEM_OBJECT_IS_SUBOBJECT) {
            printBlock(index, p, size, tag);
        }
        index++;
    }
    printLastDebugLine(label);
    g_ostrm << PS_END;
}

void kxTest::printBlock(int index, void* block, int size, void* tag) {
    psObject* const object = tag == MEM_OBJECT_IS_BUFFER ? nullptr : static_cast<psObject*>(tag);
    printFirstBlockLine(index, object, size);
    if (object) {
        printVectorBlock(static_cast<kxVector*>(object));
    } else {
        printByteBlock(block, size);
    }
    printLastBlockLine(index, object);
}

void kxTest::printFirstDebugLine(const psString& label) {
    g_ostrm << "======== OBJECTS OUTPUT START === " << label
            << " === OBJECTS OUTPUT START ========\n";
}

void kxTest::printLastDebugLine(const psString& label) {
    g_ostrm << "======== OBJECTS OUTPUT END === " << label << " === OBJECTS OUTPUT END ========\n";
}

void kxTest::printFirstBlockLine(int index, psObject* object, int size) {
    const psString heading = object ? object->objectInfo() : "MemoryBlock size=" + psText(size);
    g_ostrm << "======== Object " << index << ": " << heading << "\n";
}

void kxTest::printLastBlockLine(int, psObject*) {
    g_ostrm << "\n";
}

// Pieces of lines that an editor and a terminal can cope with.
template <class PrintLine> static void printLines(int count, PrintLine printLine) {
    constexpr int perLine = 16;
    for (int i = 0; i < count; i += perLine) {
        g_ostrm << printLine(i, count - i < perLine ? count - i : perLine) << "\n";
    }
}

void kxTest::printVectorBlock(kxVector* vector) {
    printLines(vector->size(), [vector](int i, int n) {
        return kxVector::getDataString(vector->type(), vector->getPointerAt(i), n);
    });
}

void kxTest::printByteBlock(void* buffer, int size) {
    printLines(size, [buffer](int i, int n) {
        return kxVector::getByteString(static_cast<char*>(buffer) + i, n);
    });
}

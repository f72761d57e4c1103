// Status texts, thread count and version of the core library.

#include "ntkcore.h"

#include <atomic>

namespace {

constinit std::atomic<int> s_numThreads{1};

} // namespace

const char* ntkGetStatusString(NtkStatus status) {
    switch (status) {
    case ntkStsSrcEnd: return "The source ends before its contents are complete";
    case ntkStsDstFull: return "The destination is full before the end of the source";
    case ntkStsFeaturesUnavailable:
        return "Some of the features are not available on this machine and stay disabled";
    case ntkStsNoErr: return "No error";
    case ntkStsNotImplemented: return "The function is not implemented";
    case ntkStsNullPtr: return "A pointer is null";
    case ntkStsBadSize: return "A length is negative or too large";
    case ntkStsBadValue: return "An argument is out of range";
    case ntkStsDstTooSmall: return "The result does not fit the destination";
    case ntkStsBadSrcData: return "The source data are malformed";
    case ntkStsNoProcessorInfo: return "The processor does not provide this information";
    default: return status < 0 ? "Unknown error" : "Unknown warning";
    }
}

NtkStatus ntkSetNumThreads(int numThreads) {
    if (numThreads < 1 || numThreads > NTK_MAX_NUM_THREADS) {
        return ntkStsBadValue;
    }
    s_numThreads.store(numThreads, std::memory_order_relaxed);
    return ntkStsNoErr;
}

NtkStatus ntkGetNumThreads(int* pNumThreads) {
    if (pNumThreads == nullptr) {
        return ntkStsNullPtr;
    }
    *pNumThreads = s_numThreads.load(std::memory_order_relaxed);
    return ntkStsNoErr;
}

const NtkLibraryVersion* ntkcoreGetLibVersion(void) {
    static constexpr NtkLibraryVersion version = {"ntkCore", NTK_VERSION_TEXT, __DATE__};
    return &version;
}

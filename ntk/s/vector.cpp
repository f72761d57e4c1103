// Elementary operations on byte vectors. The C library's functions are the fastest available,
// chosen for the processor when the program is loaded; this file adds the checks of the arguments.

#include "ntks.h"

#include <cstring>

NtkStatus ntksCopy_8u(const Ntk8u* pSrc, Ntk8u* pDst, int len) {
    if (pSrc == nullptr || pDst == nullptr) {
        return ntkStsNullPtr;
    }
    if (len < 0) {
        return ntkStsBadSize;
    }
    std::memcpy(pDst, pSrc, static_cast<std::size_t>(len));
    return ntkStsNoErr;
}

NtkStatus ntksZero_8u(Ntk8u* pDst, int len) {
    if (pDst == nullptr) {
        return ntkStsNullPtr;
    }
    if (len < 0) {
        return ntkStsBadSize;
    }
    std::memset(pDst, 0, static_cast<std::size_t>(len));
    return ntkStsNoErr;
}

const NtkLibraryVersion* ntksGetLibVersion(void) {
    static constexpr NtkLibraryVersion version = {"ntkS", NTK_VERSION_TEXT, __DATE__};
    return &version;
}

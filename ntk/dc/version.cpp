// Version of the compression library.

#include "ntkdc.h"

const NtkLibraryVersion* ntkdcGetLibVersion(void) {
    static constexpr NtkLibraryVersion version = {"ntkDC", NTK_VERSION_TEXT, __DATE__};
    return &version;
}

// Move-to-front.
//
// Method (B. Ryabko 1980; J. Bentley, D. Sleator, R. Tarjan, V. Wei, "A locally adaptive data
// compression scheme", CACM 29, 1986): encoder and decoder keep the same list of all byte values.
// A byte is coded as its position in the list and then moved to position 0; those before it move
// back by one. After a Burrows-Wheeler transform the next byte is usually one of the last few
// distinct ones, so most positions are small, and more than half of them are 0.
//
// State: the list, a permutation of the 256 values, front first; 256 bytes. The encoder looks up a
// byte in it, the decoder a position; both then rotate the part up to that position in the same
// way. Invariant: it stays a permutation. If the caller's block does not hold one, a byte that is
// not found counts as the last of the list.
//
// The kernels (mtfforward.cpp, mtfinverse.cpp) keep the front of the list in a vector register,
// where a rotation is one shuffle, and the rest in memory, where it is rotated a vector at a time.
// Runs of the front byte do not touch the list at all.

#include "ntkdcbz2.h"

#include "spans.h"
#include "bytekernels.h"

namespace ntk::bz2 {

namespace {

constexpr int listBytes = 256;

NtkStatus run(Choice<MoveToFront>& kernel, const Ntk8u* pSrc, Ntk8u* pDst, int srcLen,
              Ntk8u* pState) {
    if (anyNull(pSrc, pDst, pState)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0) {
        return ntkStsBadSize;
    }
    kernel.get()(pSrc, pDst, static_cast<std::size_t>(srcLen), pState);
    return ntkStsNoErr;
}

} // namespace

} // namespace ntk::bz2

using namespace ntk;
using namespace ntk::bz2;

NtkStatus ntksMTFGetSize_8u(int* pSize) {
    return returnSize(listBytes, pSize);
}

NtkStatus ntksMTFInit_8u(Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    for (int i = 0; i < listBytes; i++) {
        pState[i] = static_cast<Ntk8u>(i);
    }
    return ntkStsNoErr;
}

NtkStatus ntksMTFFwd_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState) {
    return run(mtfForwardKernel, pSrc, pDst, srcLen, pState);
}

NtkStatus ntksMTFInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, Ntk8u* pState) {
    return run(mtfInverseKernel, pSrc, pDst, srcLen, pState);
}

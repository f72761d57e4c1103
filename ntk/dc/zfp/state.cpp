// ZFP streams: begin, mode, end and length. Method: see block.cpp.

#include <cmath>

#include "ntkdczfp.h"

#include "zfpstate.h"

namespace ntk::zfp {

namespace {

// Whether the libzfp found at run time has the bit stream that this was compiled with.
bool knowsFields() {
    constexpr unsigned patchBits = 8;
    return stream_word_bits == bitsPerWord &&
           zfp_library_version >> patchBits == ZFP_VERSION >> patchBits;
}

NtkStatus makeState(Mark mark, const Ntk8u* buffer, int length, Ntk8u* pState) {
    if (anyNull(buffer, pState)) {
        return ntkStsNullPtr;
    }
    if (length < 0) {
        return ntkStsBadSize;
    }
    if (!knowsFields()) {
        return ntkStsNotImplemented;
    }
    State& state = stateIn<State>(pState);
    state = {};
    state.mark = mark;
    state.bits.begin = const_cast<Ntk8u*>(buffer); // a decoder does not write
    state.bits.ptr = state.bits.begin;
    state.bits.end = state.bits.begin + length;
    zfp_stream_set_bit_stream(&state.zfp, &state.bits);
    zfp_stream_set_accuracy(&state.zfp, 0);
    return ntkStsNoErr;
}

NtkStatus checkSetter(const Ntk8u* pState, bool isInRange) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    return isMade(stateIn<State>(pState)) && isInRange ? ntkStsNoErr : ntkStsBadValue;
}

} // namespace

} // namespace ntk::zfp

using namespace ntk;
using namespace ntk::zfp;

NtkStatus ntksZfpGetSize_32f(int* pSize) {
    return returnSize(stateBytes<State>(), pSize);
}

NtkStatus ntksEncodeZfpInit_32f(Ntk8u* pDst, int dstLen, Ntk8u* pState) {
    return makeState(Mark::encoder, pDst, dstLen, pState);
}

NtkStatus ntksDecodeZfpInit_32f(const Ntk8u* pSrc, int srcLen, Ntk8u* pState) {
    return makeState(Mark::decoder, pSrc, srcLen, pState);
}

NtkStatus ntksZfpSetRate_32f(double bitsPerValue, Ntk8u* pState) {
    const NtkStatus status = checkSetter(pState, bitsPerValue > 0 && bitsPerValue <= highestRate);
    if (status == ntkStsNoErr) {
        zfp_stream_set_rate(&stateIn<State>(pState).zfp, bitsPerValue, zfp_type_float, dims,
                            zfp_false);
    }
    return status;
}

NtkStatus ntksZfpSetAccuracy_32f(double tolerance, Ntk8u* pState) {
    const NtkStatus status = checkSetter(pState, tolerance >= 0 && std::isfinite(tolerance));
    if (status == ntkStsNoErr) {
        zfp_stream_set_accuracy(&stateIn<State>(pState).zfp, tolerance);
    }
    return status;
}

NtkStatus ntksEncodeZfpFlush_32f(Ntk8u* pState) {
    if (pState == nullptr) {
        return ntkStsNullPtr;
    }
    State& state = stateIn<State>(pState);
    if (state.mark != Mark::encoder && state.mark != Mark::ended) {
        return ntkStsBadValue;
    }
    stream_flush(&state.bits); // there is room: blocks are only accepted if their last byte fits
    state.mark = Mark::ended;
    return ntkStsNoErr;
}

NtkStatus ntksZfpGetLength_32f(int* pLength, const Ntk8u* pState) {
    if (anyNull(pLength, pState)) {
        return ntkStsNullPtr;
    }
    const State& state = stateIn<State>(pState);
    if (!isMade(state)) {
        return ntkStsBadValue;
    }
    // A reader has taken its partial byte from the buffer, a writer has not yet written it.
    const bool isByteBegun = state.mark != Mark::decoder && state.bits.bits > 0;
    *pLength = static_cast<int>(state.bits.ptr - state.bits.begin) + isByteBegun;
    return ntkStsNoErr;
}

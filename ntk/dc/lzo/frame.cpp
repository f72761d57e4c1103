#include "frame.h"

#include <algorithm>
#include <cstring>

namespace ntk::lzo {

namespace {

void put32(Ntk8u* dst, Ntk32u value) {
    for (int i = 0; i < 4; ++i) {
        dst[i] = static_cast<Ntk8u>(value >> 8 * i);
    }
}

Ntk32u get32(const Ntk8u* src) {
    Ntk32u value = 0;
    for (int i = 0; i < 4; ++i) {
        value |= static_cast<Ntk32u>(src[i]) << 8 * i;
    }
    return value;
}

} // namespace

Ntk32u mostPieces(Ntk32u srcLen) {
    return std::clamp(srcLen / minPieceBytes, 1U, maxPieces);
}

void writeFrame(const Frame& frame, Ntk8u* dst) {
    std::memcpy(dst, emptyStream, sizeof emptyStream);
    dst += sizeof emptyStream;
    put32(dst, frame.count);
    for (size_t i = 0; i < frame.count; ++i) {
        put32(dst + 4 + 8 * i, frame.pieces[i].encoded);
        put32(dst + 8 + 8 * i, frame.pieces[i].decoded);
    }
}

bool isFrame(const Ntk8u* src, Ntk32u srcLen) {
    return srcLen > sizeof emptyStream && std::memcmp(src, emptyStream, sizeof emptyStream) == 0;
}

bool readFrame(const Ntk8u* src, Ntk32u srcLen, Frame& frame) {
    if (srcLen < frameBytes(0)) {
        return false;
    }
    src += sizeof emptyStream;
    frame.count = get32(src);
    if (frame.count < 2 || frame.count > maxPieces || srcLen < frameBytes(frame.count)) {
        return false;
    }
    Ntk64u streams = 0;
    for (size_t i = 0; i < frame.count; ++i) {
        frame.pieces[i] = {get32(src + 4 + 8 * i), get32(src + 8 + 8 * i)};
        streams += frame.pieces[i].encoded;
    }
    return streams == srcLen - frameBytes(frame.count);
}

} // namespace ntk::lzo

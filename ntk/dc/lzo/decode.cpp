// LZO1X decoders, on liblzo2's checking one. Format and frame: see encode.cpp.
//
// Both calls use the checking decoder: liblzo2's decoder without checks is only 2 to 9 percent
// faster, on text as well as on runs, and a damaged stream makes it read and write anywhere.

#include "ntkdc.h"

#include <lzo/lzo1x.h>

#include "../callerblock.h"
#include "frame.h"

namespace ntk::lzo {

namespace {

struct Piece {
    const Ntk8u* src;
    Ntk32u srcLen;
    Ntk8u* dst;
    Ntk32u dstLen; // of the piece's data
    bool isValid;  // after decoding
};

NtkStatus decodeStream(const Ntk8u* src, Ntk32u srcLen, Ntk8u* dst, Ntk32u* dstLen) {
    lzo_uint length = *dstLen;
    const int result = lzo1x_decompress_safe(src, srcLen, dst, &length, nullptr);
    if (result != LZO_E_OK) {
        return result == LZO_E_OUTPUT_OVERRUN ? ntkStsDstTooSmall : ntkStsBadSrcData;
    }
    *dstLen = static_cast<Ntk32u>(length);
    return ntkStsNoErr;
}

void decodePiece(void* pieces, unsigned i) {
    Piece& p = static_cast<Piece*>(pieces)[i];
    Ntk32u length = p.dstLen;
    p.isValid = decodeStream(p.src, p.srcLen, p.dst, &length) == ntkStsNoErr && length == p.dstLen;
}

Ntk64u decodedLength(const Frame& frame) {
    Ntk64u length = 0;
    for (Ntk32u i = 0; i < frame.count; ++i) {
        length += frame.pieces[i].decoded;
    }
    return length;
}

// src: the streams, all of them complete; dst: has room for all of their data.
bool decodePieces(const Frame& frame, const Ntk8u* src, Ntk8u* dst) {
    Piece pieces[maxPieces];
    for (Ntk32u i = 0; i < frame.count; ++i) {
        const PieceLengths& lengths = frame.pieces[i];
        pieces[i] = {src, lengths.encoded, dst, lengths.decoded, false};
        src += lengths.encoded;
        dst += lengths.decoded;
    }
    runJobs(frame.count, allowedWorkers(), decodePiece, pieces);
    bool areValid = true;
    for (Ntk32u i = 0; i < frame.count; ++i) {
        areValid = areValid && pieces[i].isValid;
    }
    return areValid;
}

NtkStatus decodeFrame(const Ntk8u* src, Ntk32u srcLen, Ntk8u* dst, Ntk32u* dstLen) {
    Frame frame;
    if (!readFrame(src, srcLen, frame)) {
        return ntkStsBadSrcData;
    }
    const Ntk64u length = decodedLength(frame);
    if (length > *dstLen) {
        return ntkStsDstTooSmall;
    }
    if (!decodePieces(frame, src + frameBytes(frame.count), dst)) {
        return ntkStsBadSrcData;
    }
    *dstLen = static_cast<Ntk32u>(length);
    return ntkStsNoErr;
}

} // namespace

} // namespace ntk::lzo

using namespace ntk;
using namespace ntk::lzo;

NtkStatus ntksDecodeLZOSafe_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen) {
    if (anyNull(pSrc, pDst, pDstLen)) {
        return ntkStsNullPtr;
    }
    return isFrame(pSrc, srcLen) ? decodeFrame(pSrc, srcLen, pDst, pDstLen)
                                 : decodeStream(pSrc, srcLen, pDst, pDstLen);
}

NtkStatus ntksDecodeLZO_8u(const Ntk8u* pSrc, Ntk32u srcLen, Ntk8u* pDst, Ntk32u* pDstLen) {
    return ntksDecodeLZOSafe_8u(pSrc, srcLen, pDst, pDstLen);
}

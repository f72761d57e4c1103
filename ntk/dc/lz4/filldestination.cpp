#include "filldestination.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "blockreader.h"
#include "ntks.h"

namespace ntk::lz4 {

namespace {

// Rules of the format for the end of a block: the last 5 bytes are literals, and the last match
// begins at least 12 bytes before the end.
constexpr std::size_t minLastLiterals = 5;
constexpr std::size_t minLastMatchToEnd = 12;

// The longest run of literals that fits with its token and length bytes. From 15 literals on, one
// of every 256 bytes after the token is a length byte.
std::size_t literalsThatFit(std::size_t room) {
    const std::size_t afterToken = room - 1;
    return afterToken - (afterToken + 241) / 256;
}

std::size_t lastLiterals(const Window& w, std::size_t srcDone, std::size_t room) {
    return room == 0 ? 0 : std::min(w.srcLen - srcDone, literalsThatFit(room));
}

// The byte of the source at a position, of the dictionary at a negative one.
Ntk8u byteAt(const Window& w, std::ptrdiff_t position) {
    return position >= 0 ? w.src[position] : w.dictEnd[position];
}

// Whether the sequence decodes to the bytes of the source from a position on.
bool isVerified(const Sequence& s, const Window& w, std::size_t srcDone) {
    const std::size_t matchStart = srcDone + s.literalLength;
    if (matchStart + s.matchLength > w.srcLen || s.offset > matchStart + w.dictLen ||
        std::memcmp(s.literals, w.src + srcDone, s.literalLength) != 0) {
        return false;
    }
    const auto first = static_cast<std::ptrdiff_t>(matchStart - s.offset);
    for (std::size_t i = 0; i < s.matchLength; ++i) {
        if (w.src[matchStart + i] != byteAt(w, first + static_cast<std::ptrdiff_t>(i))) {
            return false;
        }
    }
    return true;
}

std::size_t writeLastLiterals(const Ntk8u* literals, std::size_t count, Ntk8u* dst) {
    std::size_t written = 0;
    dst[written++] = static_cast<Ntk8u>(std::min<std::size_t>(count, 15) << 4);
    if (count >= 15) {
        std::size_t rest = count - 15;
        for (; rest >= 255; rest -= 255) {
            dst[written++] = 255;
        }
        dst[written++] = static_cast<Ntk8u>(rest);
    }
    ntksCopy_8u(literals, dst + written, static_cast<int>(count));
    return written + count;
}

} // namespace

Filled fillDestination(const Window& window, Ntk8u* dst, std::size_t capacity) {
    BlockReader reader(dst, capacity);
    Filled kept{0, 0};
    Sequence s{};
    while (reader.next(s) && s.matchLength != 0 && isVerified(s, window, kept.srcBytes)) {
        const std::size_t srcDone = kept.srcBytes + s.literalLength + s.matchLength;
        const std::size_t last = lastLiterals(window, srcDone, capacity - reader.position());
        if (last < minLastLiterals || s.matchLength + last < minLastMatchToEnd) {
            break;
        }
        kept = {reader.position(), srcDone};
    }
    const std::size_t last = lastLiterals(window, kept.srcBytes, capacity - kept.blockBytes);
    kept.blockBytes += writeLastLiterals(window.src + kept.srcBytes, last, dst + kept.blockBytes);
    kept.srcBytes += last;
    return kept;
}

NtkStatus finishSafe(int length, const Window& window, int* pSrcLen, Ntk8u* pDst, int* pDstLen) {
    if (length > 0) {
        *pDstLen = length;
        return ntkStsNoErr;
    }
    if (*pDstLen == 0) {
        return ntkStsDstTooSmall;
    }
    const Filled filled = fillDestination(window, pDst, static_cast<std::size_t>(*pDstLen));
    const bool isWhole = filled.srcBytes == window.srcLen;
    *pSrcLen = static_cast<int>(filled.srcBytes);
    *pDstLen = static_cast<int>(filled.blockBytes);
    return isWhole ? ntkStsNoErr : ntkStsDstFull;
}

} // namespace ntk::lz4

// Inverse Burrows-Wheeler transform.
//
// Method: the transform holds the last byte of each sorted rotation; counting sort of these bytes
// gives the first ones. The k-th x among the last bytes and the k-th x among the first ones are the
// same byte of the text, so rotation i, moved by one byte to the right, is in the row of its last
// byte among the first ones (Burrows and Wheeler, 1994, A Block-sorting Lossless Data Compression
// Algorithm). One pass over the source builds two link tables: from each row to the row of the
// rotation that begins one byte later, and to that of the rotation that begins one byte earlier.
// Following them takes one dependent load per byte from anywhere in the table and is bound by cache
// latency. Hence two walks run side by side, one from the beginning of the text and one from its
// end, and meet in the middle.
//
// State: two tables of srcLen 32-bit links, with the row in the high 24 bits and the byte that the
// step yields in the low 8.
//
// Invariants: both tables are permutations of the rows whatever the source holds, so every walk
// stays within them. They are each other's inverse: a wrong row still yields a rotation.
//
// Limit: rows have 24 bits, hence maxTextLen.

#include "ntkdcbwt.h"

#include <array>
#include <cstddef>

#include "../callerblock.h"
#include "workspace.h"

namespace ntk::bwt {

namespace {

using Counts = std::array<Ntk32u, 256>;

struct Links {
    Links(Arena& arena, std::size_t n)
        : later(arena.allocate<Ntk32u>(n)), earlier(arena.allocate<Ntk32u>(n)) {}

    Ntk32u* later;   // to the rotation one byte later, with the first byte of this row's rotation
    Ntk32u* earlier; // to the rotation one byte earlier, with the last byte
};

Counts countBytes(const Ntk8u* bytes, Ntk32u n) {
    // Two tables, so that equal neighbours do not wait for each other's counter.
    Counts even{};
    Counts odd{};
    Ntk32u i = 0;
    for (; i + 1 < n; i += 2) {
        ++even[bytes[i]];
        ++odd[bytes[i + 1]];
    }
    if (i < n) {
        ++even[bytes[i]];
    }
    for (std::size_t c = 0; c < even.size(); ++c) {
        even[c] += odd[c];
    }
    return even;
}

// The two halves of the source are linked side by side, again so that equal neighbours do not wait
// for each other's counter.
void makeLinks(const Ntk8u* src, Ntk32u n, const Links& links) {
    const Ntk32u half = n / 2;
    Counts low = countBytes(src, half);
    Counts high = countBytes(src + half, n - half);
    Ntk32u row = 0;
    for (std::size_t c = 0; c < low.size(); ++c) {
        const Ntk32u lowCount = low[c];
        const Ntk32u highCount = high[c];
        low[c] = row;
        high[c] = row + lowCount;
        row += lowCount + highCount;
    }
    const auto link = [src, &links](Counts& rows, Ntk32u i) {
        const Ntk32u byte = src[i];
        const Ntk32u earlier = rows[byte]++;
        links.earlier[i] = (earlier << 8) | byte;
        links.later[earlier] = (i << 8) | byte;
    };
    for (Ntk32u i = 0; i < half; ++i) {
        link(low, i);
        link(high, half + i);
    }
    if (half + half < n) {
        link(high, n - 1);
    }
}

void walk(const Links& links, Ntk32u n, Ntk32u idx, Ntk8u* dst) {
    Ntk32u forward = idx;
    Ntk32u backward = idx;
    Ntk8u* front = dst;
    Ntk8u* back = dst + n;
    for (Ntk32u pair = n / 2; pair != 0; --pair) {
        const Ntk32u later = links.later[forward];
        const Ntk32u earlier = links.earlier[backward];
        *front++ = static_cast<Ntk8u>(later);
        *--back = static_cast<Ntk8u>(earlier);
        forward = later >> 8;
        backward = earlier >> 8;
    }
    if (front != back) {
        *front = static_cast<Ntk8u>(links.later[forward]);
    }
}

} // namespace

} // namespace ntk::bwt

using namespace ntk;
using namespace ntk::bwt;

NtkStatus ntksBWTInvGetSize_8u(int srcLen, int* pSize) {
    if (pSize == nullptr) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0 || srcLen > maxTextLen) {
        return ntkStsBadSize;
    }
    Arena arena(nullptr);
    const Links links(arena, static_cast<std::size_t>(srcLen));
    *pSize = static_cast<int>(arena.bytesNeeded());
    return ntkStsNoErr;
}

NtkStatus ntksBWTInv_8u(const Ntk8u* pSrc, Ntk8u* pDst, int srcLen, int idx, Ntk8u* pBuff) {
    if (anyNull(pSrc, pDst, pBuff)) {
        return ntkStsNullPtr;
    }
    if (srcLen < 0 || srcLen > maxTextLen) {
        return ntkStsBadSize;
    }
    if (idx < 0 || (idx >= srcLen && idx > 0)) {
        return ntkStsBadValue;
    }
    const auto n = static_cast<Ntk32u>(srcLen);
    Arena arena(pBuff);
    const Links links(arena, n);
    makeLinks(pSrc, n, links);
    walk(links, n, static_cast<Ntk32u>(idx), pDst);
    return ntkStsNoErr;
}

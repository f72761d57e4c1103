// Headers of blocks, and stored blocks (RFC 1951, 3.2.3 and 3.2.4).

#include <algorithm>

#include "stream.h"

namespace ntk::inflate {

Outcome readBlockHeader(Stream& s) {
    if (!s.in.has(3)) {
        return Outcome::sourceUsedUp;
    }
    s.isLastBlock = s.in.take(1) != 0;
    switch (s.in.take(2)) {
    case 0:
        s.in.drop(s.in.count % 8);
        s.mode = modeStoredLength;
        return Outcome::goOn;
    case 1: s.mode = ntkInflateFixed; return Outcome::goOn;
    case 2:
        s.mode = modeCodeCounts;
        return s.work == nullptr ? Outcome::noWorkBuffer : Outcome::goOn;
    default: return Outcome::malformed;
    }
}

Outcome readStoredLength(Stream& s) {
    if (!s.in.has(32)) {
        return Outcome::sourceUsedUp;
    }
    s.storedBytes = static_cast<unsigned>(s.in.take(16));
    const auto complement = static_cast<unsigned>(s.in.take(16));
    s.mode = ntkInflateStored;
    return (s.storedBytes ^ complement) == 0xffff ? Outcome::goOn : Outcome::malformed;
}

Outcome copyStored(Stream& s) {
    s.in.unreadBytes();
    // Bytes passed in as pending bits come before those of the source.
    while (s.storedBytes > 0 && s.in.count >= 8 && s.out.room() > 0) {
        *s.out.next++ = static_cast<Ntk8u>(s.in.take(8));
        --s.storedBytes;
    }
    const auto available = static_cast<std::size_t>(s.in.end - s.in.next);
    if (s.in.count < 8) {
        const std::size_t n = std::min({std::size_t{s.storedBytes}, available, s.out.room()});
        std::copy_n(s.in.next, n, s.out.next);
        s.in.next += n;
        s.out.next += n;
        s.storedBytes -= static_cast<unsigned>(n);
    }
    if (s.storedBytes > 0) {
        return s.out.room() > 0 ? Outcome::sourceUsedUp : Outcome::destinationFull;
    }
    s.endBlock();
    return Outcome::goOn;
}

} // namespace ntk::inflate

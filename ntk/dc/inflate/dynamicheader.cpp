// The header of a dynamic block (RFC 1951, 3.2.7): the lengths of the code for code lengths, then,
// in that code, the lengths of the literal and distance codes as one run-length encoded sequence.

#include <algorithm>

#include "stream.h"

namespace ntk::inflate {

Outcome readCodeCounts(Stream& s) {
    if (!s.in.has(14)) {
        return Outcome::sourceUsedUp;
    }
    WorkBuffer& w = *s.work;
    const unsigned numLiteralCodes = 257 + static_cast<unsigned>(s.in.take(5));
    const unsigned numDistanceCodes = 1 + static_cast<unsigned>(s.in.take(5));
    if (numLiteralCodes > maxLiteralCodes || numDistanceCodes > maxDistanceCodes) {
        return Outcome::malformed; // before such numbers can get into the work buffer
    }
    w.numLiteralCodes = numLiteralCodes;
    w.numDistanceCodes = numDistanceCodes;
    w.numLengthCodesGiven = 4 + static_cast<unsigned>(s.in.take(4));
    w.position = 0;
    w.lengthCodeLengths.fill(0);
    s.mode = modeLengthCodeLengths;
    return Outcome::goOn;
}

Outcome readLengthCodeLengths(Stream& s) {
    static constexpr Ntk8u order[numLengthCodes] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                    11, 4,  12, 3, 13, 2, 14, 1, 15};
    WorkBuffer& w = *s.work;
    for (; w.position < w.numLengthCodesGiven; ++w.position) {
        if (!s.in.has(3)) {
            return Outcome::sourceUsedUp;
        }
        w.lengthCodeLengths[order[w.position]] = static_cast<Ntk8u>(s.in.take(3));
    }
    w.lengthCodeBits =
        buildTable(w.lengthCodeLengths.data(), numLengthCodes, Incomplete::isRefused,
                   codeLengthSymbols.data(), lengthCodeRootBits, w.lengthCodes.data());
    w.position = 0;
    s.mode = modeCodeLengths;
    return w.lengthCodeBits == 0 ? Outcome::malformed : Outcome::goOn;
}

namespace {

Outcome buildCodes(Stream& s) {
    WorkBuffer& w = *s.work;
    if (w.lengths[endOfBlock] == 0) {
        return Outcome::malformed;
    }
    w.hasPairs = 0;
    w.literalBits = buildTable(w.lengths.data(), w.numLiteralCodes, Incomplete::mayBeOneBit,
                               literalSymbols.data(), literalRootBits, w.literals.data());
    w.distanceBits = buildTable(w.lengths.data() + w.numLiteralCodes, w.numDistanceCodes,
                                Incomplete::mayBeOneBit, distanceSymbols.data(), distanceRootBits,
                                w.distances.data());
    if (w.literalBits == 0 || w.distanceBits == 0) {
        return Outcome::malformed;
    }
    s.mode = ntkInflateDynamic;
    return Outcome::goOn;
}

} // namespace

Outcome readCodeLengths(Stream& s) {
    WorkBuffer& w = *s.work;
    const CodeTable table = {w.lengthCodes.data(), lowMask(w.lengthCodeBits)};
    const unsigned total = w.numLiteralCodes + w.numDistanceCodes;
    while (w.position < total) {
        s.in.has(lengthCodeRootBits + 7);
        const Entry entry = table.at(s.in.bits);
        if (takenBits(entry) > s.in.count) {
            return Outcome::sourceUsedUp;
        }
        unsigned repeat = 1;
        Ntk8u length = 0;
        if (takenBits(entry) == codeBits(entry)) {
            length = static_cast<Ntk8u>(valueOf(entry));
        } else {
            repeat = valueWithExtra(entry, s.in.bits);
            if (takenBits(entry) - codeBits(entry) == 2) { // repeats the previous length
                if (w.position == 0) {
                    return Outcome::malformed;
                }
                length = w.lengths[w.position - 1];
            }
        }
        if (repeat > total - w.position) {
            return Outcome::malformed;
        }
        std::fill_n(w.lengths.begin() + w.position, repeat, length);
        w.position += repeat;
        s.in.drop(takenBits(entry));
    }
    return buildCodes(s);
}

} // namespace ntk::inflate

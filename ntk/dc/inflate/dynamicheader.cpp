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
    w.literalBits = buildTable(w.lengths.data(), w.numLiteralCodes, Incomplete::mayBeOneBit,
                               literalSymbols.data(), literalRootBits, w.literals.data());
    w.distanceBits = buildTable(w.lengths.data() + w.numLiteralCodes, w.numDistanceCodes,
                                Incomplete::mayBeOneBit, distanceSymbols.data(), distanceRootBits,
                                w.distances.data());
    if (w.literalBits == 0 || w.distanceBits == 0) {
        return Outcome::malformed;
    }
    static_assert(literalRootBits <= pairBits); // see fillPairs
    fillPairsKernel.get()(w.codes().literals, w.codes().distances, w.pairs);
    s.mode = ntkInflateDynamic;
    return Outcome::goOn;
}

} // namespace

Outcome readCodeLengths(Stream& s) {
    WorkBuffer& w = *s.work;
    const CodeTable table = {w.lengthCodes.data(), lowMask(w.lengthCodeBits)};
    const unsigned total = w.numLiteralCodes + w.numDistanceCodes;
    BitReader in = s.in; // copies, because writing the lengths may alias anything
    unsigned position = w.position;
    Outcome outcome = Outcome::goOn;
    while (position < total) {
        in.has(lengthCodeRootBits + 7);
        const Entry entry = table.at(in.bits);
        if (takenBits(entry) > in.count) {
            outcome = Outcome::sourceUsedUp;
            break;
        }
        if (takenBits(entry) == codeBits(entry)) {
            w.lengths[position++] = static_cast<Ntk8u>(valueOf(entry));
        } else {
            const unsigned repeat = valueWithExtra(entry, in.bits);
            const bool isPrevious = takenBits(entry) - codeBits(entry) == 2;
            if (repeat > total - position || (isPrevious && position == 0)) {
                return Outcome::malformed;
            }
            std::fill_n(w.lengths.begin() + position, repeat,
                        isPrevious ? w.lengths[position - 1] : 0);
            position += repeat;
        }
        in.drop(takenBits(entry));
    }
    s.in = in;
    w.position = position;
    if (outcome != Outcome::goOn) {
        return outcome;
    }
    return buildCodes(s);
}

} // namespace ntk::inflate

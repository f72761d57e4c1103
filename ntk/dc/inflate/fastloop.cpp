// The symbols of a block far from the ends of source and destination: no symbol needs a check
// against either, and copies may write beyond the end of a match.
//
// What takes the time is the chain from one lookup to the next, and branches that are guessed
// wrong: on text nobody can tell whether a literal or a length comes next. Well-known techniques of
// inflaters: one refill of a 64-bit buffer for a length and its distance, entries that have base
// and extra bits, the next entry looked up before the copy, copies beyond the end of a match,
// tables for several symbols at once (pairs.h). With pairs, further:
// - No branch between literals and lengths. A turn writes two bytes, counts those that are
//   literals, then decodes a distance and copies; where the entry has no length, the entry of the
//   distance is masked to 0: no bits, no bytes. Against the same loop with that branch, in clocks
//   of libdeflate's: book1 0.97 to 1.03, geo 1.07 to 1.24.
// - The distance is looked up in the bits before they are refilled, so that the chain does not wait
//   for the refill: about 10% fewer clocks.
// A chain of 15 cycles is left for a length and its distance (two lookups of 5, shifts, masks). It
// is all that counts on text of level 1, five matches to a literal.
//
// Without pairs, for the fixed codes (no two fit into an index), and for data with matches so long
// that the processor learns which symbol comes next (pairsPay in symbols.cpp), a literal costs half
// of that chain and the branch is better: on pic with fixed codes the loop without it took 50%
// more.
//
// Tried and not kept, with its part of all clocks:
// - Entries of 8 bytes with each field in a byte of its own: 6 to 8% more.
// - A table of zeros chosen by a conditional move in place of the mask: 9 to 11% more.
// - An inner loop for runs of literals among the pairs: 4 to 12% more on text and geo.
// - Copies of 64 bytes or of the longest match at once, without a loop: within 2%, either way.
// - Indices of 10, 11 and 13 bits in place of 12: up to 24%, up to 6% and 4 to 11% more.

#include <algorithm>

#include "stream.h"

namespace ntk::inflate {

namespace {

// Refills are to 56 bits or more. A turn refills after a length, the last time before the distance
// and then the next length are taken: the bits for a lookup among the distances must be left then.
constexpr unsigned refilledBits = 56;
constexpr unsigned lengthMaxBits = 15 + 5;
constexpr unsigned distanceMaxBits = 15 + 13;
constexpr unsigned turnBits = lengthMaxBits + distanceRootBits; // at the start of a turn
static_assert(refilledBits - distanceMaxBits >= turnBits && turnBits >= pairBits);
// Of three literals, the first comes before a refill, the others after it.
static_assert(turnBits >= 2 * literalRootBits);
static_assert(refilledBits - 2 * literalRootBits >= turnBits);

// A turn refills at most twice, each time reading 8 bytes, the second from at most 7 bytes further
// on.
constexpr std::ptrdiff_t sourceMargin = 7 + 8;

// Literals and a match of up to 32 bytes, and what copying such a match writes beyond its end.
constexpr unsigned shortMatch = 32;
constexpr std::ptrdiff_t destinationMargin = 2 + shortMatch + 31;
// The same for any match.
constexpr std::ptrdiff_t longMatchMargin = 258 + 31;

inline void store64(Ntk8u* bytes, Ntk64u word) {
    std::memcpy(bytes, &word, sizeof word);
}

inline void copy16(Ntk8u* to, const Ntk8u* from) {
    std::memcpy(to, from, 16);
}

// For distances below 8: the factor that repeats the bytes at the distance to fill a word, and the
// largest multiple of the distance up to 8, the step at which the word is written repeatedly.
struct Repetition {
    Ntk64u factor;
    unsigned step;
};
constexpr Repetition repetitions[8] = {{0, 0},
                                       {0x0101010101010101, 8},
                                       {0x0001000100010001, 8},
                                       {0x0001000001000001, 6},
                                       {0x0000000100000001, 8},
                                       {0x0000010000000001, 5},
                                       {0x0001000000000001, 6},
                                       {0x0100000000000001, 7}};

// For distances of 1 to 15. Writes up to 31 bytes beyond the end.
inline void repeat(Ntk8u* to, unsigned length, unsigned distance) {
    const Ntk8u* from = to - distance;
    Ntk8u* const end = to + length;
    if (distance >= 8) {
        do {
            store64(to, load64(from));
            store64(to + 8, load64(from + 8));
            to += 16;
            from += 16;
        } while (to < end);
    } else {
        const Repetition r = repetitions[distance];
        const Ntk64u word = (load64(from) & ~(~Ntk64u{0} << (8 * distance))) * r.factor;
        do {
            store64(to, word);
            store64(to + r.step, word);
            store64(to + 2 * r.step, word);
            store64(to + 3 * r.step, word);
            to += 4 * r.step;
        } while (to < end);
    }
}

// A match of more than 32 bytes.
inline void copyLong(Ntk8u* to, unsigned length, unsigned distance) {
    if (distance < 16) {
        repeat(to, length, distance);
        return;
    }
    const Ntk8u* const from = to - distance;
    for (unsigned done = 0; done < length; done += 16) {
        copy16(to + done, from + done);
    }
}

// All bits, or none if the entry has no length. Arithmetic, so that no compiler makes it a branch.
inline Entry ifLength(Entry e) {
    static_assert(noLengthFlag == 1U << 13);
    return static_cast<Entry>(~(static_cast<Ntk32s>(e << 18) >> 31));
}

// The pointers of a turn that stay as they are.
struct Bounds {
    const Ntk8u* lastSource;
    const Ntk8u* lastOut;
    const Ntk8u* outEnd;

    Bounds(const Stream& s, std::ptrdiff_t mostSource)
        : lastSource(s.in.next + std::min(s.in.end - s.in.next - sourceMargin, mostSource)),
          lastOut(s.out.end - destinationMargin), outEnd(s.out.end) {}
};

enum class Tables { pairs, singles };

// Long, because the state of the loop has to stay in registers.
template <Tables tables>
[[gnu::always_inline]] inline Outcome decode(Stream& s, const Codes& codes) {
    if (s.in.end - s.in.next < sourceMargin || s.out.end - s.out.next < destinationMargin) {
        return Outcome::goOn;
    }
    const CodeTable symbols = tables == Tables::pairs
                                  ? CodeTable{codes.pairs->data(), lowMask(pairBits)}
                                  : codes.literals;
    const CodeTable distances = codes.distances;
    const Bounds bounds(s, tables == Tables::pairs ? s.in.end - s.in.next : singlesSegment);
    const Ntk8u* const historyBegin = s.out.historyBegin;
    BitReader in = s.in;
    Ntk8u* out = s.out.next;
    Outcome outcome = Outcome::goOn;

    in.refillWide();
    Entry entry = symbols.at(in.bits);
    while (in.next <= bounds.lastSource && out <= bounds.lastOut) {
        if constexpr (tables == Tables::singles) {
            if (literalsIn(entry) != 0) {
                in.drop(takenBits(entry));
                *out++ = static_cast<Ntk8u>(valueOf(entry));
                entry = symbols.at(in.bits);
                in.refillWide();
                if (literalsIn(entry) != 0) {
                    in.drop(takenBits(entry));
                    *out++ = static_cast<Ntk8u>(valueOf(entry));
                    entry = symbols.at(in.bits);
                    if (literalsIn(entry) != 0) {
                        in.drop(takenBits(entry));
                        *out++ = static_cast<Ntk8u>(valueOf(entry));
                        entry = symbols.at(in.bits);
                        continue;
                    }
                }
            }
        } else {
            const auto literals = static_cast<Ntk16u>(valueOf(entry));
            std::memcpy(out, &literals, sizeof literals);
            out += literalsIn(entry);
        }
        Ntk64u before = in.bits;
        in.drop(takenBits(entry));
        if (isException(entry)) [[unlikely]] {
            if (isLink(entry)) {
                entry = codes.literals.follow(entry, in.bits);
                before = in.bits;
                in.drop(takenBits(entry));
                if (literalsIn(entry) != 0) {
                    *out++ = static_cast<Ntk8u>(valueOf(entry));
                    in.refillWide();
                    entry = symbols.at(in.bits);
                    continue;
                }
            }
            if (isEndOfBlock(entry)) {
                s.endBlock();
                break;
            }
            if (isInvalid(entry)) {
                outcome = Outcome::malformed;
                break;
            }
        }
        const Entry mask = tables == Tables::pairs ? ifLength(entry) : ~Entry{0};
        const unsigned length = lengthWithExtra(entry, before) & mask;

        const Ntk64u unrefilled = in.bits;
        in.refillWide();
        entry = distances.at(unrefilled) & mask;
        if (isException(entry)) [[unlikely]] {
            if (isLink(entry)) {
                in.drop(takenBits(entry));
                entry = distances.follow(entry, in.bits);
            }
            if (isInvalid(entry)) {
                outcome = Outcome::malformed;
                break;
            }
        }
        const unsigned distance = valueWithExtra(entry, in.bits);
        in.drop(takenBits(entry));
        entry = symbols.at(in.bits);
        if (distance > static_cast<std::size_t>(out - historyBegin)) [[unlikely]] {
            s.pendingLength = length;
            s.pendingDistance = distance;
            break;
        }
        if (length > shortMatch) [[unlikely]] {
            if (bounds.outEnd - out < longMatchMargin) {
                s.pendingLength = length;
                s.pendingDistance = distance;
                break;
            }
            copyLong(out, length, distance);
        } else if (distance - 1 < 15) [[unlikely]] { // 0: no length, and any copy will do
            repeat(out, length, distance);
        } else {
            copy16(out, out - distance);
            copy16(out + 16, out - distance + 16);
        }
        out += length;
    }
    s.in = in;
    s.out.next = out;
    return outcome;
}

Outcome decodeGeneric(Stream& s, const Codes& codes) {
    return codes.pairs != nullptr ? decode<Tables::pairs>(s, codes)
                                  : decode<Tables::singles>(s, codes);
}

// Shifts by a variable take one step in place of three, on the way from each symbol to the next.
// All processors with AVX2 have them, unless a virtual machine hides them.
[[gnu::target("avx2,bmi,bmi2")]] Outcome decodeWithBmi2(Stream& s, const Codes& codes) {
    return codes.pairs != nullptr ? decode<Tables::pairs>(s, codes)
                                  : decode<Tables::singles>(s, codes);
}
Outcome decodeBmi2(Stream& s, const Codes& codes) {
    return __builtin_cpu_supports("bmi2") ? decodeWithBmi2(s, codes) : decodeGeneric(s, codes);
}

constexpr Candidate<DecodeFast> candidates[] = {
    {"bmi2", NTK_CPU_AVX2, 0, decodeBmi2},
    {"generic", 0, 0, decodeGeneric},
};

} // namespace

constinit Choice<DecodeFast> decodeFastKernel{candidates};

} // namespace ntk::inflate

// The symbols of a block far from the ends of source and destination: only a match that is no pair
// needs a check against either, and copies may write beyond the end of a match.
//
// What takes the time is the chain from one lookup to the next (7 cycles: a mask, a load, a shift),
// and branches that are guessed wrong: on text nobody can tell what comes next. Well-known
// techniques of inflaters: a 64-bit buffer that is refilled once a turn, entries that have base and
// extra bits, the next entry looked up before the copy and before the refill. Further:
// - One lookup for a whole match or for two literals (pairs.h), and no branch between the two: both
//   copy 16 bytes, a match from the data, literals from their entry of the table. A lookup for the
//   length and one for the distance, where there was no length thrown away, took 1.5 (geo) to 1.8
//   (obj1, book1) times as many clocks.
// - Nothing is copied from where something has just been written, other than by a match: a load of
//   bytes that stores of other sizes are still writing waits for them. To copy what does not count
//   from the place itself took 1.3 (geo) to 1.45 times (obj1).
// - Everything else (codes too long for the index, longer and nearer matches, the end of the block)
//   leaves by one branch; on text and geo 1 to 3 of 100 turns do.
//
// Tried and not kept, with its part of all clocks:
// - Pairs with matches of up to 32 bytes, copied as twice 16: 2 to 9% more, for the stores.
// - Two turns for a refill: 2% less (obj1), but then a pair may take no more than 22 bits; with
//   fixed codes many take more, and book1 twice as long.
// - A loop of its own, with a branch for literals, for the first 256 bytes of each block: streams
//   of 1 KB took 8% more, only those of 250 bytes less (4100 clocks in place of 6400).

#include <cstdint>

#include "matchcopy.h"
#include "stream.h"

namespace ntk::inflate {

namespace {

// Refills are to 56 bits or more. They do for what comes until the next one: a pair, or the second
// part of a long code and a distance; then the lookup of the next pair.
constexpr unsigned refilledBits = 56;
constexpr unsigned pairMaxBits = fixedPairBits + 13;
constexpr unsigned secondPartMaxBits = maxCodeBits - literalRootBits + 5;
constexpr unsigned distanceMaxBits = maxCodeBits + 13;
static_assert(pairBits <= fixedPairBits);
static_assert(refilledBits >= pairMaxBits + fixedPairBits);
static_assert(refilledBits >= secondPartMaxBits + distanceMaxBits + fixedPairBits);

// A turn refills at most twice, each time reading 8 bytes, the second from at most 7 bytes further
// on.
constexpr std::ptrdiff_t sourceMargin = 7 + 8;
// What a pair writes.
constexpr std::ptrdiff_t destinationMargin = longestPaired;

enum class Next { turn, end };

// A pair, taken from the source.
struct Taken {
    Pair pair;
    Ntk64u before; // the bits that begin with it
    const Ntk8u* literals;
};

class Loop {
public:
    [[gnu::always_inline]] Loop(Stream& s, const Codes& codes)
        : m_stream(s), m_codes(codes), m_distances(codes.distances), m_pairs(codes.pairs.pairs),
          m_mask(~(~Ntk64u{0} << codes.pairs.indexBits)), m_historyBegin(s.out.historyBegin),
          m_lastSource(s.in.end - sourceMargin), m_outEnd(s.out.end), m_in(s.in),
          m_out(s.out.next) {}

    [[gnu::always_inline]] Outcome run() {
        m_in.refillWide();
        lookUp();
        Next next = Next::turn;
        while (next == Next::turn && m_in.next <= m_lastSource &&
               m_out <= m_outEnd - destinationMargin) {
            const Taken taken = take();
            if (!isOther(taken.pair)) [[likely]] {
                next = copyPair(taken);
            } else {
                next = decodeOther(taken);
            }
        }
        m_stream.in = m_in;
        m_stream.out.next = m_out;
        return m_outcome;
    }

private:
    [[gnu::always_inline]] void lookUp() {
        m_index = m_in.bits & m_mask;
        m_next = m_pairs[m_index];
    }

    [[gnu::always_inline]] Taken take() {
        const Taken taken{m_next, m_in.bits, literalsOf(&m_pairs[m_index])};
        m_in.drop(takenBits(taken.pair));
        lookUp();
        return taken;
    }

    [[gnu::always_inline]] Next copyPair(const Taken& taken) {
        m_in.refillWide();
        const Ntk64u distance = distanceOf(taken.pair, taken.before);
        // A number, for it may be before the history and then is no pointer.
        const std::uintptr_t match = reinterpret_cast<std::uintptr_t>(m_out) - distance;
        const Ntk8u* from = taken.literals;
        asm("" : "+r"(from)); // computed in any case, so that compilers make the choice no branch
        from = isMatch(taken.pair) ? reinterpret_cast<const Ntk8u*>(match) : from;
        if (match < reinterpret_cast<std::uintptr_t>(m_historyBegin)) [[unlikely]] {
            return leaveMatch(static_cast<unsigned>(lengthOf(taken.pair)),
                              static_cast<unsigned>(distance));
        }
        copy16(m_out, from);
        m_out += lengthOf(taken.pair);
        return Next::turn;
    }

    // A length, then its distance; or what is rare.
    [[gnu::always_inline]] Next decodeOther(const Taken& taken) {
        Entry entry = firstOf(taken.pair);
        Ntk64u before = taken.before;
        m_in.refillWide();
        if (isException(entry)) [[unlikely]] {
            if (isLink(entry)) {
                entry = m_codes.literals.follow(entry, m_in.bits);
                before = m_in.bits;
                m_in.drop(takenBits(entry));
                if (literalsIn(entry) != 0) {
                    *m_out++ = static_cast<Ntk8u>(valueOf(entry));
                    return refillAndLookUp();
                }
            }
            if (isEndOfBlock(entry)) {
                m_stream.endBlock();
                return Next::end;
            }
            if (isInvalid(entry)) {
                return fail();
            }
        }
        return decodeDistance(lengthWithExtra(entry, before));
    }

    [[gnu::always_inline]] Next decodeDistance(unsigned length) {
        Entry entry = m_distances.at(m_in.bits);
        if (isException(entry)) [[unlikely]] {
            if (isLink(entry)) {
                m_in.drop(takenBits(entry));
                entry = m_distances.follow(entry, m_in.bits);
            }
            if (isInvalid(entry)) {
                return fail();
            }
        }
        const unsigned distance = valueWithExtra(entry, m_in.bits);
        m_in.drop(takenBits(entry));
        refillAndLookUp();
        if (distance > history() || m_outEnd - m_out < length + writtenBeyond) [[unlikely]] {
            return leaveMatch(length, distance);
        }
        copyMatch(m_out, length, distance);
        m_out += length;
        return Next::turn;
    }

    [[gnu::always_inline]] Next refillAndLookUp() {
        lookUp();
        m_in.refillWide();
        return Next::turn;
    }

    Next leaveMatch(unsigned length, unsigned distance) {
        m_stream.pendingLength = length;
        m_stream.pendingDistance = distance;
        return Next::end;
    }

    Next fail() {
        m_outcome = Outcome::malformed;
        return Next::end;
    }

    [[gnu::always_inline]] std::size_t history() const {
        return static_cast<std::size_t>(m_out - m_historyBegin);
    }

    Stream& m_stream;
    const Codes& m_codes;
    const CodeTable m_distances;
    const Pair* const m_pairs;
    const Ntk64u m_mask;
    const Ntk8u* const m_historyBegin;
    const Ntk8u* const m_lastSource;
    const Ntk8u* const m_outEnd;
    BitReader m_in;
    Ntk8u* m_out;
    Ntk64u m_index = 0; // of the next pair
    Pair m_next = 0;
    Outcome m_outcome = Outcome::goOn;
};

[[gnu::always_inline]] inline Outcome decode(Stream& s, const Codes& codes) {
    if (s.in.end - s.in.next < sourceMargin || s.out.end - s.out.next < destinationMargin) {
        return Outcome::goOn;
    }
    return Loop(s, codes).run();
}

Outcome decodeGeneric(Stream& s, const Codes& codes) {
    return decode(s, codes);
}

// Shifts by a variable take one step in place of three, on the way from each symbol to the next.
// All processors with AVX2 have them, unless a virtual machine hides them.
[[gnu::target("avx2,bmi,bmi2")]] Outcome decodeWithBmi2(Stream& s, const Codes& codes) {
    return decode(s, codes);
}
Outcome decodeBmi2(Stream& s, const Codes& codes) {
    return __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2")
               ? decodeWithBmi2(s, codes)
               : decodeGeneric(s, codes);
}

constexpr Candidate<DecodeFast> candidates[] = {
    {"bmi2", NTK_CPU_AVX2, 0, decodeBmi2},
    {"generic", 0, 0, decodeGeneric},
};

} // namespace

constinit Choice<DecodeFast> decodeFastKernel{candidates};

} // namespace ntk::inflate

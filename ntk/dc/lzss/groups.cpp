// The decoder's fast way: whole groups. Format: see encode.cpp.
//
// What takes the time is the way from one token to the next: only the low bits of a token tell
// where it ends. So
// - both words at which the next token can begin are loaded as soon as the place of this one is
//   known, and the choice between them takes two cycles: two steps share the latency of a load;
// - a step takes a match and the literals behind it, whose number the flags alone tell, without a
//   branch for the kind of the token;
// - source and destination are kept less the index of the token in its group: a literal, which
//   moves all three on by one, takes no addition;
// - the word that begins at a group's flags mostly holds its first token, too.
// A step is some 45 instructions, and the way through it 5 cycles; between two groups it is 6
// to 10. To load ahead of the decision is usual where a table tells how long a symbol is, and to
// copy without regard to the length is as in LZ4.
//
// Clocks a byte on book1, geo, obj1 and pic (100 KiB; LZ4's decoder: 0.82, 0.57, 0.43 and 0.12):
// 1.18, 1.61, 0.85 and 0.26. What was tried:
// - a step for each match and for each end of a group, so that no branch tells them apart: 2.57,
//   2.94, 1.34 and 0.43 as gcc compiled it, with branches; without, and with the next token loaded
//   ahead, still 2.0 and 2.8 on book1 and geo. The flags of each step then wait for the token of
//   the step before, whether a group ends there or not: 14 cycles;
// - here, with three additions on the way to the next place in place of one: 1.51, 2.13, 1.09 and
//   0.37; with both pointers moved on by the literals: 1.40, 1.95, 0.96 and 0.34; the first token
//   always loaded: 3 to 4% slower;
// - the choice by arithmetic in place of a conditional move: 4 to 9% slower;
// - 16 bytes copied for a match, not 32: 4% faster on book1 and geo, 7 and 14% slower on bib and
//   trans, whose matches are longer. 32 bytes as one word of AVX2: 1.9 clocks a byte in place of
//   0.8 on progl, as such a load overlaps several stores that are still under way;
// - the check of the distance left out where a window of data is there: 2 to 4% faster, but the
//   loop is needed twice;
// - matches of 3 bytes not taken by the encoder: 1.10, 1.36, 0.71 and 0.25, but the streams become
//   4, 26, 7 and 6% longer; those from beyond 4096 bytes: 1.17, 1.72, 0.83 and 0.26, and the
//   streams become 1 to 2% longer.
#include "groups.h"

#include <bit>

#include "copymatch.h"

namespace ntk::lzss {

namespace {

// The bytes that are copied for a match, whatever its length: longer ones are rare.
constexpr Ntk32u usualCopy = 32;

// A match of which the destination, less the index of the token, moves on by lengthLess1.
struct ShortMatch {
    Ntk32u lengthLess1;
    Ntk32u distance;
};

// By the code of a token: what is added to the number above its distance, and the bits of the word
// that belong to it.
struct TokenKind {
    Ntk32u lengthLess1;
    Ntk32u mask;
};
constexpr TokenKind tokenKinds[longCode + 1] = {
    {2, 0xffff}, {3, 0xffff}, {4, 0xffff}, {5, 0xffff},
    {6, 0xffff}, {7, 0xffff}, {8, 0xffff}, {minLongMatch - 1, 0xffffff}};

// A token of four bytes is read as one of three with the length minLongestMatch, the end of a group
// as a match of distance 0.
ShortMatch readShortToken(Ntk64u word, Ntk64u code) {
    const TokenKind& kind = tokenKinds[code];
    const Ntk32u token = static_cast<Ntk32u>(word) & kind.mask;
    return {(token >> 17) + kind.lengthLess1, token >> 3 & maxDistance};
}

// Where the next token begins, less its index, and the word there.
struct Next {
    const Ntk8u* base;
    Ntk64u word;
};

// Behind a token of two bytes, or of three if the code is longCode. Compilers would make a branch
// of the choice. The address of `late` may be made with `base`, which therefore changes last.
Next afterToken(Ntk64u code, const Ntk8u* base, Ntk64u nextIndex) {
    base += 2;
    Next next{base, load<Ntk64u>(base + nextIndex - 1)};
    asm("cmp %[longCode], %[code]\n\t"
        "cmovae %[late], %[word]\n\t"
        "sbb $0, %[base]"
        : [word] "+r"(next.word), [base] "+r"(next.base)
        : [late] "rm"(load<Ntk64u>(base + nextIndex)), [code] "r"(code), [longCode] "i"(longCode)
        : "cc");
    return next;
}

// The length of any match. Corrects what follows its token if that has four bytes.
Ntk32u wholeLengthLess1(ShortMatch match, const Ntk8u* token, Ntk64u nextIndex, Next& next) {
    if (match.lengthLess1 != minLongestMatch - 1) {
        return match.lengthLess1;
    }
    ++next.base;
    next.word = load<Ntk64u>(next.base + nextIndex);
    return match.lengthLess1 + token[3];
}

// The word at a group's first token, from that at its flags if it holds the token.
Ntk64u firstToken(Ntk64u flagsWord, const Ntk8u* base, Ntk64u index) {
    return index <= 4 ? flagsWord >> (8 + 8 * index) : load<Ntk64u>(base + index);
}

// Long, because the state of the loop has to stay in registers. Of the flags, the lowest one left
// is that of the next match; behind them is a 1 for the end of the group.
[[gnu::always_inline]] inline const Ntk8u* decode(Data& data, const Ntk8u* from,
                                                  const Ntk8u* last) {
    constexpr Ntk64u endFlag = 1U << tokensPerGroup;
    const Ntk8u* const begin = data.begin;
    const Ntk8u* const full = data.full;
    Ntk8u* to = data.end;
    Ntk64u word = load<Ntk64u>(from);
    while (from <= last && to < full) {
        Ntk64u flags = (word & 0xff) | endFlag;
        auto index = static_cast<Ntk64u>(std::countr_zero(word | endFlag));
        flags &= flags - 1;
        ++from;
        copy8(to, from);
        word = firstToken(word, from, index);
        while (flags != 0) {
            const auto nextIndex = static_cast<Ntk64u>(std::countr_zero(flags));
            flags &= flags - 1;
            const Ntk64u code = word & longCode;
            Next next = afterToken(code, from, nextIndex);
            const ShortMatch match = readShortToken(word, code);
            Ntk8u* const at = to + index;
            if (match.lengthLess1 >= match.distance || match.distance > at - begin ||
                match.lengthLess1 >= usualCopy) [[unlikely]] {
                const Ntk8u* const token = from + index;
                if (endsGroup(token)) {
                    from = token + 2 - tokensPerGroup;
                    to = at - tokensPerGroup;
                    word = load<Ntk64u>(token + 2);
                    break;
                }
                if (match.distance == 0 || match.distance > at - begin) {
                    return nullptr;
                }
                const Ntk32u lengthLess1 = wholeLengthLess1(match, token, nextIndex, next);
                copyMatch(at, {lengthLess1 + 1, match.distance});
                to += lengthLess1;
                from = next.base;
                word = next.word;
                copy8(to + index + 1, from + index + 1);
                index = nextIndex;
                continue; // here, not joining the usual way, which gains 5%
            }
            copy32(at, at - match.distance);
            to += match.lengthLess1;
            from = next.base;
            word = next.word;
            copy8(to + index + 1, from + index + 1);
            index = nextIndex;
        }
        from += tokensPerGroup;
        to += tokensPerGroup;
    }
    data.end = to;
    return from;
}

const Ntk8u* decodeGeneric(Data& data, const Ntk8u* from, const Ntk8u* last) {
    return decode(data, from, last);
}

// One instruction in place of two or three for the lowest flag, 3 to 10% of the time. All
// processors with AVX2 have both sets, unless a virtual machine hides one.
[[gnu::target("bmi,bmi2")]] const Ntk8u* decodeWithBmi2(Data& data, const Ntk8u* from,
                                                        const Ntk8u* last) {
    return decode(data, from, last);
}
const Ntk8u* decodeBmi2(Data& data, const Ntk8u* from, const Ntk8u* last) {
    return __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2")
               ? decodeWithBmi2(data, from, last)
               : decodeGeneric(data, from, last);
}

constexpr Candidate<DecodeGroups> candidates[] = {
    {"bmi2", NTK_CPU_AVX2, 0, decodeBmi2},
    {"generic", 0, 0, decodeGeneric},
};

} // namespace

constinit Choice<DecodeGroups> decodeGroupsKernel{candidates};

} // namespace ntk::lzss

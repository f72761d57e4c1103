// Chains of instructions each of which waits for the result of the one before: what they cost in
// clocks of the core is known from their length alone.
#pragma once

#include <cstdint>

// Clocks of the core from one link to the next, on the x86-64 processors of both makers since 2008
// (64-bit registers).
constexpr double coreClocksPerMultiplication = 3;
constexpr double coreClocksPerAddition = 1;

// Links that follow each other without a jump; a chain is as many as a multiple of this.
constexpr int linksPerBlock = 64;

// Registers alone: recent processors compute the sum with a constant while they rename registers,
// in no time.
inline std::uint64_t additionChain(int blocks, std::uint64_t sum = 1) {
    asm volatile("1:\n\t"
                 ".rept %c[links]\n\taddq %[other], %[sum]\n\t.endr\n\t"
                 "decl %[blocks]\n\t"
                 "jnz 1b"
                 : [sum] "+r"(sum), [blocks] "+r"(blocks)
                 : [other] "r"(std::uint64_t{3}), [links] "i"(linksPerBlock)
                 : "cc");
    return sum;
}

// Goes on from a product and gives the next one: two chains of which one needs the other's cannot
// overlap.
inline std::uint64_t multiplicationChain(int blocks, std::uint64_t product = 3) {
    asm volatile("1:\n\t"
                 ".rept %c[links]\n\timulq %[product], %[product]\n\t.endr\n\t"
                 "decl %[blocks]\n\t"
                 "jnz 1b"
                 : [product] "+r"(product), [blocks] "+r"(blocks)
                 : [links] "i"(linksPerBlock)
                 : "cc");
    return product;
}

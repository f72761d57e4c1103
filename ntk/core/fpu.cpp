// The floating-point control and status words of the calling thread: those of the x87, and MXCSR.

#include "ntkcore.h"

namespace {

// Bits that may be written. The others are reserved: writing one to MXCSR faults.
constexpr Ntk32u x87Writable = 0x1f3f;
constexpr Ntk32u simdWritable = 0xffff;
constexpr Ntk32u simdFlags = 0x3f;

constexpr Ntk32u replaced(Ntk32u word, Ntk32u value, Ntk32u mask) {
    return (word & ~mask) | (value & mask);
}

Ntk32u x87Control() {
    Ntk16u word = 0;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

Ntk32u x87Status() {
    Ntk16u word = 0;
    asm volatile("fnstsw %0" : "=m"(word));
    return word;
}

Ntk32u setX87Control(Ntk32u value, Ntk32u mask) {
    const auto word = static_cast<Ntk16u>(replaced(x87Control(), value, mask & x87Writable));
    asm volatile("fldcw %0" : : "m"(word));
    return word;
}

Ntk32u simdWord() {
    Ntk32u word = 0;
    asm volatile("stmxcsr %0" : "=m"(word));
    return word;
}

Ntk32u setSimdWord(Ntk32u value, Ntk32u mask) {
    const Ntk32u word = replaced(simdWord(), value, mask & simdWritable);
    asm volatile("ldmxcsr %0" : : "m"(word));
    return word;
}

} // namespace

Ntk32u ntkFpuSsx4TS(int op, Ntk32u value, Ntk32u mask) {
    switch (op) {
    case ntkFpuSetControl: return setX87Control(value, mask);
    case ntkFpuGetControl: return x87Control();
    case ntkFpuGetStatus: return x87Status();
    case ntkFpuClear: asm volatile("fnclex"); return 0;
    case ntkSsxSet: return setSimdWord(value, mask);
    case ntkSsxGet: return simdWord();
    case ntkSsxClear: setSimdWord(0, simdFlags); return 0;
    default: return 0;
    }
}

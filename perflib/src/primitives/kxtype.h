#pragma once

#include "psstring.h"

// Element types of the library's primitives. A code is the width in bits plus the property bits;
// the width of a complex type is that of one of its two components.
constexpr int kxSignedBit = 256;
constexpr int kxFloatBit = 512;
constexpr int kxComplexBit = 1024;

enum kxType : int {
    kxUndef = 0,
    kx8u = 8,
    kx16u = 16,
    kx32u = 32,
    kx64u = 64,
    kx8s = kxSignedBit + 8,
    kx16s = kxSignedBit + 16,
    kx32s = kxSignedBit + 32,
    kx64s = kxSignedBit + 64,
    kx32f = kxFloatBit + 32,
    kx64f = kxFloatBit + 64,
    kx16uc = kxComplexBit + kx16u,
    kx8sc = kxComplexBit + kx8s,
    kx16sc = kxComplexBit + kx16s,
    kx32sc = kxComplexBit + kx32s,
    kx64sc = kxComplexBit + kx64s,
    kx32fc = kxComplexBit + kx32f,
    kx64fc = kxComplexBit + kx64f,
};

// The name, such as "32fc"; "undef" for a code that is none of the above.
psString typeToString(kxType type);
// The type of exactly this name, kxUndef when there is none.
kxType stringToType(const psString& name);

// Bytes of one element, both components of a complex one; 0 for a code that is no type.
int kxTypeBytes(kxType type);
inline bool kxIsComplex(kxType type) {
    return (type & kxComplexBit) != 0;
}
// The type of the components of a complex type; others as they are.
kxType kxRealType(kxType type);
// The complex type with components of this type; kxUndef when the library has none.
kxType kxComplexType(kxType type);

// Characters of the type token (digits, one of "u", "s", "f", perhaps "c") at the start of text;
// 0 when there is none.
int lenOfType(const psString& text);

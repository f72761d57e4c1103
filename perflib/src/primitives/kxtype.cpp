#include "kxtype.h"

#include <cctype>

namespace {

struct TypeName {
    kxType type;
    const char* name;
};

constexpr TypeName typeNames[] = {
    {kx8u, "8u"},     {kx16u, "16u"},   {kx32u, "32u"},   {kx64u, "64u"},   {kx8s, "8s"},
    {kx16s, "16s"},   {kx32s, "32s"},   {kx64s, "64s"},   {kx32f, "32f"},   {kx64f, "64f"},
    {kx16uc, "16uc"}, {kx8sc, "8sc"},   {kx16sc, "16sc"}, {kx32sc, "32sc"}, {kx64sc, "64sc"},
    {kx32fc, "32fc"}, {kx64fc, "64fc"},
};

const char* nameOf(kxType type) {
    for (const TypeName& entry : typeNames) {
        if (entry.type == type) {
            return entry.name;
        }
    }
    return nullptr;
}

} // namespace

psString typeToString(kxType type) {
    const char* const name = nameOf(type);
    return name ? name : "undef";
}

kxType stringToType(const psString& name) {
    for (const TypeName& entry : typeNames) {
        if (name == entry.name) {
            return entry.type;
        }
    }
    return kxUndef;
}

int kxTypeBytes(kxType type) {
    constexpr int widthBits = 8 | 16 | 32 | 64;
    if (nameOf(type) == nullptr) {
        return 0;
    }
    return (type & widthBits) / 8 * (kxIsComplex(type) ? 2 : 1);
}

kxType kxRealType(kxType type) {
    return static_cast<kxType>(type & ~kxComplexBit);
}

kxType kxComplexType(kxType type) {
    const auto complexType = static_cast<kxType>(type | kxComplexBit);
    return nameOf(complexType) ? complexType : kxUndef;
}

int lenOfType(const psString& text) {
    int length = 0;
    while (std::isdigit(static_cast<unsigned char>(text[length]))) {
        ++length;
    }
    const char letter = text[length];
    if (length == 0 || (letter != 'u' && letter != 's' && letter != 'f')) {
        return 0;
    }
    ++length;
    return text[length] == 'c' ? length + 1 : length;
}

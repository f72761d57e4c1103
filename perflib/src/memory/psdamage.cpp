#include "psdamage.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "psobject.h"

namespace {

// Values without a rule, and never 0 or 255, so that what a faulty function writes differs from
// them. Twice the length of a margin, which may then begin anywhere in the first half.
constexpr auto g_pattern = [] {
    std::array<unsigned char, 2UL * psMarginBytes> bytes{};
    unsigned state = 1;
    for (size_t i = 0; i < psMarginBytes; i++) {
        state = state * 1664525 + 1013904223;
        bytes[i] = bytes[i + psMarginBytes] = static_cast<unsigned char>(1 + (state >> 16) % 254);
    }
    return bytes;
}();

const unsigned char* patternAt(std::uintptr_t address) {
    return &g_pattern[address % psMarginBytes];
}

struct Span {
    std::uintptr_t from, to;
    size_t length() const { return to - from; }
};

std::uintptr_t begin(const Address& block) {
    return reinterpret_cast<std::uintptr_t>(block.pointer);
}
std::uintptr_t end(const Address& block) {
    return begin(block) + static_cast<std::uintptr_t>(block.size);
}
Span before(const Address& block) {
    return {std::max(block.space.first, begin(block) - psMarginBytes), begin(block)};
}
Span after(const Address& block) {
    return {end(block), std::min(block.space.end, end(block) + psMarginBytes)};
}

void fill(const Span& margin) {
    std::memcpy(reinterpret_cast<void*>(margin.from), patternAt(margin.from), margin.length());
}

bool isIntact(std::uintptr_t address) {
    return *reinterpret_cast<const unsigned char*>(address) == *patternAt(address);
}
bool isIntact(const Span& margin) {
    return std::memcmp(reinterpret_cast<const void*>(margin.from), patternAt(margin.from),
                       margin.length()) == 0;
}

int bytesOver(const Span& margin) {
    std::uintptr_t to = isIntact(margin) ? margin.from : margin.to;
    while (to > margin.from && isIntact(to - 1)) {
        to--;
    }
    return static_cast<int>(to - margin.from);
}

int bytesUnder(const Span& margin) {
    std::uintptr_t from = isIntact(margin) ? margin.to : margin.from;
    while (from < margin.to && isIntact(from)) {
        from++;
    }
    return static_cast<int>(margin.to - from);
}

// The pattern in place of the stored pointer, unless that was damaged.
void coverSlot(const Address& block) {
    if (psHasIntactSlot(block)) {
        const std::uintptr_t slot = psSlotOf(block);
        fill({slot, slot + sizeof(void*)});
    }
}

psBlockDamage examine(const Address& block) {
    coverSlot(block);
    const psBlockDamage damage{
        block.place, block.size, {}, bytesUnder(before(block)), bytesOver(after(block))};
    psFillMargins(block);
    return damage;
}

bool isDamaged(const psBlockDamage& damage) {
    return damage.under > 0 || damage.over > 0;
}

// Made when there is damage for the first time: blocks are released at any time of the program.
psList<psBlockDamage>& kept() {
    static psList<psBlockDamage> list;
    return list;
}

psString bytesText(int count) {
    return psText(count) + (count == 1 ? " byte" : " bytes");
}

psString nameOf(const void* tag) {
    const bool isObject = tag && tag != MEM_OBJECT_IS_BUFFER && tag != MEM_OBJECT_IS_SUBOBJECT;
    return isObject ? static_cast<const psObject*>(tag)->objectInfo() : psString();
}

} // namespace

psString psDamageText(const psBlockDamage& damage) {
    psString text("block ");
    text << damage.place << " (" << bytesText(damage.size);
    if (!damage.name.empty()) {
        text << ", " << damage.name;
    }
    text << "): ";
    if (damage.under > 0) {
        text << bytesText(damage.under) << " under its begin" << (damage.over > 0 ? ", " : "");
    }
    if (damage.over > 0) {
        text << bytesText(damage.over) << " over its end";
    }
    return text;
}

psList<psBlockDamage> psTakeDamage() {
    psList<psBlockDamage> found;
    std::swap(found, kept());
    psForEachBlock([&](const Address& block) {
        psBlockDamage damage = examine(block);
        if (isDamaged(damage)) {
            damage.name = nameOf(block.tag);
            found.append(damage);
        }
    });
    return found;
}

void psFillMargins(const Address& block) {
    fill(before(block));
    fill(after(block));
    psStoreSlot(block);
}

// Without the name: the object of a block that is released behind its back may be gone.
void psKeepDamage(const Address& block) {
    const psBlockDamage damage = examine(block);
    if (isDamaged(damage)) {
        kept().append(damage);
    }
}

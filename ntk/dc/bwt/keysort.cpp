#include "keysort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace ntk::bwt {

namespace {

constexpr std::size_t fewElements = 16;  // measured
constexpr std::size_t manyElements = 64; // measured, too

void placeFew(const BStar* unsorted, std::size_t count, BStar* sorted) {
    for (std::size_t i = 0; i < count; ++i) {
        const Ntk64u key = unsorted[i].key;
        std::size_t rank = 0;
        for (std::size_t j = 0; j < i; ++j) {
            rank += unsorted[j].key <= key ? 1 : 0;
        }
        for (std::size_t j = i + 1; j < count; ++j) {
            rank += unsorted[j].key < key ? 1 : 0;
        }
        sorted[rank] = unsorted[i];
    }
}

void sortFew(BStar* first, std::size_t count) {
    std::array<BStar, fewElements> unsorted;
    std::copy_n(first, count, unsorted.begin());
    placeFew(unsorted.data(), count, first);
}

Ntk64u median(Ntk64u a, Ntk64u b, Ntk64u c) {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

// Moves the elements whose keys are below the limit to the front; returns the end of these.
BStar* partition(BStar* first, BStar* end, Ntk64u limit) {
    BStar* boundary = first;
    for (BStar* at = first; at != end; ++at) {
        const BStar element = *at;
        *at = *boundary;
        *boundary = element;
        boundary += element.key < limit ? 1 : 0;
    }
    return boundary;
}

// Of nine keys all over the elements.
Ntk64u pivotOf(const BStar* first, std::size_t count) {
    const std::size_t step = (count - 1) / 8;
    const auto medianAt = [=](std::size_t i) {
        return median(first[i * step].key, first[(i + 1) * step].key, first[(i + 2) * step].key);
    };
    return median(medianAt(0), medianAt(3), medianAt(6));
}

void sortUpTo(BStar* first, BStar* end, int depth) {
    while (static_cast<std::size_t>(end - first) > fewElements) {
        if (depth-- == 0) {
            std::sort(first, end, [](const BStar& a, const BStar& b) { return a.key < b.key; });
            return;
        }
        const Ntk64u pivot = pivotOf(first, static_cast<std::size_t>(end - first));
        BStar* middle = partition(first, end, pivot);
        if (middle == first) { // the pivot is the least key: those equal to it are in their place
            first = partition(first, end, pivot + 1);
            if (pivot == ~Ntk64u{0}) {
                return;
            }
            continue;
        }
        sortUpTo(first, middle, depth);
        first = middle;
    }
    sortFew(first, static_cast<std::size_t>(end - first));
}

// Above this bit all keys are the same.
int highestDifference(const BStar* first, const BStar* end) {
    Ntk64u differences = 0;
    for (const BStar* at = first; at != end; ++at) {
        differences |= at->key ^ first->key;
    }
    return static_cast<int>(std::bit_width(differences));
}

int depthFor(std::size_t count) {
    return 2 * static_cast<int>(std::bit_width(count));
}

void sortBucket(const BStar* from, std::size_t count, BStar* to) {
    if (count <= fewElements) {
        placeFew(from, count, to);
    } else {
        std::copy_n(from, count, to);
        sortUpTo(to, to + count, depthFor(count));
    }
}

void sortMany(BStar* first, BStar* end, BStar* scratch) {
    const int shift = std::max(highestDifference(first, end) - 8, 0);
    const auto bucketOf = [=](const BStar& b) { return b.key >> shift & 0xFF; };
    std::array<Ntk32u, 256> ends{};
    for (const BStar* at = first; at != end; ++at) {
        ++ends[bucketOf(*at)];
    }
    Ntk32u begin = 0;
    for (Ntk32u& bucket : ends) {
        begin += std::exchange(bucket, begin);
    }
    for (const BStar* at = first; at != end; ++at) {
        scratch[ends[bucketOf(*at)]++] = *at;
    }
    begin = 0;
    for (const Ntk32u bucketEnd : ends) {
        sortBucket(scratch + begin, bucketEnd - begin, first + begin);
        begin = bucketEnd;
    }
}

} // namespace

void sortByKey(BStar* first, BStar* end, const Scratch& scratch) {
    const auto count = static_cast<std::size_t>(end - first);
    if (count > manyElements && count <= scratch.count) {
        sortMany(first, end, scratch.elements);
    } else {
        sortUpTo(first, end, depthFor(count));
    }
}

} // namespace ntk::bwt

// Move-to-front, encoding. Method: see mtf.cpp.
//
// One step encodes a byte and the equal bytes after it: those become zeroes, which are written 16
// at a time and counted without a branch. Only if the byte is not in the front of the list, or the
// run is long, is a branch taken. Binary data have many bytes that are not: there the kernel that
// keeps the whole list in registers takes half the time (mtfforwardvbmi.cpp).

#include "bytekernels.h"
#include "mtflist.h"
#include "mtfrun.h"

namespace ntk::bz2 {

namespace {

void code(MtfList& list, Ntk8u byte, Ntk8u* to) {
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(byte));
    const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(list.front(), wanted));
    if (__builtin_expect(found != 0, 1)) {
        const auto position = static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(found)));
        *to = static_cast<Ntk8u>(position);
        list.moveWithinFront(byte, position);
    } else {
        const unsigned position = list.findBehindFront(byte);
        *to = static_cast<Ntk8u>(position);
        list.moveFromBehind(byte, position);
    }
}

void forwardGeneric(const Ntk8u* from, Ntk8u* to, std::size_t length, Ntk8u listBytes[256]) {
    MtfList list(listBytes);
    std::size_t i = 0;
    while (length - i > laneCount) {
        const Ntk8u byte = from[i];
        code(list, byte, to + i);
        i++;
        unsigned run = laneCount;
        while (run == laneCount && length - i >= laneCount) {
            run = codeRun(from + i, byte, to + i);
            i += run;
        }
    }
    for (; i < length; i++) {
        code(list, from[i], to + i);
    }
    list.store(listBytes);
}

constexpr Candidate<MoveToFront> candidates[] = {
    {"vbmi", NTK_CPU_AVX512F | NTK_CPU_AVX512BW | NTK_CPU_AVX512VBMI, 0, mtfForwardVbmi},
    {"generic", 0, 0, forwardGeneric},
};

} // namespace

constinit Choice<MoveToFront> mtfForwardKernel{candidates};

} // namespace ntk::bz2

// The Burrows-Wheeler transform: all sorts against each other, the inverse of transforms and of
// what is none.
#include "fuzz.h"
#include "ntkdc.h"
#include "oracles/bwt.h"

namespace {

template <class GetSize> fuzz::Block bufferFor(GetSize* getSize, const Bytes& text) {
    int size = 0;
    FUZZ_CHECK(getSize(static_cast<int>(text.size()), &size) == ntkStsNoErr);
    return fuzz::Block(static_cast<std::size_t>(size), 0xa5);
}

oracle::Bwt transformed(const Bytes& text, NtkBWTSortAlgorithmHint hint) {
    const fuzz::Block buffer = bufferFor(ntksBWTFwdGetSize_8u, text);
    const fuzz::Block src(text);
    const fuzz::Block dst(text.size());
    int row = -1;
    FUZZ_CHECK(ntksBWTFwd_SelectSort_8u(src.data(), dst.data(), src.size(), &row, buffer.data(),
                                        hint) == ntkStsNoErr);
    return {dst.first(dst.size()), row};
}

// Also in place, with the same result.
NtkStatus restored(const Bytes& bytes, int row, Bytes& text) {
    const fuzz::Block buffer = bufferFor(ntksBWTInvGetSize_8u, bytes);
    const fuzz::Block src(bytes);
    const fuzz::Block dst(bytes.size(), 0x5a);
    const NtkStatus status = ntksBWTInv_8u(src.data(), dst.data(), src.size(), row, buffer.data());
    text = dst.first(dst.size());
    if (status == ntkStsNoErr) {
        FUZZ_CHECK(ntksBWTInv_8u(src.data(), src.data(), src.size(), row, buffer.data()) ==
                   ntkStsNoErr);
        FUZZ_CHECK(src.first(src.size()) == text);
    } else {
        FUZZ_CHECK(text == Bytes(bytes.size(), 0x5a));
    }
    return status;
}

void checkRoundTrip(const Bytes& text) {
    const oracle::Bwt found = transformed(text, ntkBWTAutoSort);
    for (const NtkBWTSortAlgorithmHint hint :
         {ntkBWTItohTanakaLimSort, ntkBWTItohTanakaUnlimSort, ntkBWTSuffixSort}) {
        FUZZ_CHECK(transformed(text, hint) == found);
    }
    constexpr std::size_t mostToSort = 512;
    FUZZ_CHECK(text.empty() || text.size() > mostToSort || found == oracle::bwt(text));
    Bytes back;
    FUZZ_CHECK(restored(found.bytes, found.row, back) == ntkStsNoErr);
    FUZZ_CHECK(back == text);
}

// What is no transform gives bytes of the source all the same.
void checkAnyBytes(const Bytes& bytes, int row) {
    const auto length = static_cast<int>(bytes.size());
    Bytes text;
    const NtkStatus status = restored(bytes, row, text);
    const bool isRow = row >= 0 && row < std::max(length, 1);
    FUZZ_CHECK(status == (isRow ? ntkStsNoErr : ntkStsBadValue));
    bool isInSource[256] = {};
    for (const Ntk8u byte : bytes) {
        isInSource[byte] = true;
    }
    FUZZ_CHECK(status != ntkStsNoErr ||
               std::all_of(text.begin(), text.end(), [&](Ntk8u byte) { return isInSource[byte]; }));
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const bool isText = in.flip();
    const unsigned repeats = 1 + in.below(16); // equal rotations
    const unsigned place = in.word();
    const Bytes part = in.rest();
    Bytes bytes;
    for (unsigned i = 0; i < repeats && bytes.size() < 2048; ++i) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    if (isText) {
        checkRoundTrip(bytes);
    } else {
        // Mostly a row, or next to the first or the last.
        checkAnyBytes(bytes, static_cast<int>(place % (bytes.size() + 8)) - 4);
    }
    return 0;
}

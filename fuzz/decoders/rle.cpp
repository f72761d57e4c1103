// bzip2's run-length coder in pieces of any lengths, both ways, against a reference.
#include "ntkdc.h"
#include "oracles/bz2_rle.h"
#include "pieces.h"

namespace {

constexpr std::size_t mostData = 1 << 18;

fuzz::Block stateFor(NtkStatus (*init)(Ntk8u*)) {
    int size = 0;
    FUZZ_CHECK(ntksRLEGetSize_BZ2_8u(&size) == ntkStsNoErr);
    fuzz::Block state(static_cast<std::size_t>(size), 0xa5);
    FUZZ_CHECK(init(state.data()) == ntkStsNoErr);
    return state;
}

void checkDecoder(const Bytes& code, const fuzz::PieceLengths& src, const fuzz::PieceLengths& dst,
                  const fuzz::Block& state) {
    const fuzz::Streamed found = fuzz::inPieces(code, src, dst, mostData, [&](auto... arguments) {
        return ntksDecodeRLEState_BZ2_8u(arguments..., state.data());
    });
    FUZZ_CHECK(found.status >= 0);
    Bytes expected = oracle::rleDecoded(code);
    expected.resize(std::min(expected.size(), mostData));
    FUZZ_CHECK(found.out == expected);
}

// With pieces of at least 5 bytes for the code, as progress is not promised with fewer.
Bytes encoded(const Bytes& bytes, fuzz::PieceLengths lengths, const fuzz::PieceLengths& src,
              const fuzz::Block& state) {
    fuzz::PieceLengths srcLengths = src;
    Bytes code;
    std::size_t taken = 0;
    NtkStatus status = ntkStsNoErr;
    while (taken < bytes.size() || status == ntkStsDstFull) {
        const std::size_t count = std::min(srcLengths.next(), bytes.size() - taken);
        const fuzz::Block piece(Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(taken),
                                      bytes.begin() + static_cast<std::ptrdiff_t>(taken + count)));
        const fuzz::Block dst(4 + lengths.next());
        Ntk8u* at = piece.data();
        int left = piece.size();
        int length = dst.size();
        status = ntksEncodeRLE_BZ2_8u(&at, &left, dst.data(), &length, state.data());
        FUZZ_CHECK(status == ntkStsNoErr || status == ntkStsDstFull);
        FUZZ_CHECK(status == ntkStsDstFull || left == 0);
        FUZZ_CHECK(0 <= length && length <= dst.size());
        FUZZ_CHECK(0 <= left && at + left == piece.data() + piece.size());
        FUZZ_CHECK(length > 0 || left < piece.size() || piece.size() == 0);
        const Bytes some = dst.first(length);
        code.insert(code.end(), some.begin(), some.end());
        taken += count - static_cast<std::size_t>(left);
    }
    const fuzz::Block last(5);
    int length = -1;
    FUZZ_CHECK(ntksEncodeRLEFlush_BZ2_8u(last.data(), &length, state.data()) == ntkStsNoErr);
    FUZZ_CHECK(0 <= length && length <= 5);
    const Bytes some = last.first(length);
    code.insert(code.end(), some.begin(), some.end());
    return code;
}

void checkInUse(const Bytes& code, const fuzz::Block& state) {
    Ntk8u inUse[256];
    FUZZ_CHECK(ntksRLEGetInUseTable_8u(inUse, state.data()) == ntkStsNoErr);
    Ntk8u expected[256] = {};
    for (const Ntk8u byte : code) {
        expected[byte] = 1;
    }
    FUZZ_CHECK(std::equal(inUse, inUse + 256, expected));
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const fuzz::PieceLengths src(in);
    const fuzz::PieceLengths dst(in);
    const unsigned stretch = 1 + in.below(90); // for runs of hundreds of bytes
    const Bytes bytes = in.rest();
    checkDecoder(bytes, src, dst, stateFor(ntksDecodeRLEInit_BZ2_8u));

    Bytes text;
    for (std::size_t i = 0; i < std::min<std::size_t>(bytes.size(), 1024); ++i) {
        text.insert(text.end(), i % 3 == 2 ? stretch : 1, bytes[i]);
    }
    const fuzz::Block state = stateFor(ntksEncodeRLEInit_BZ2_8u);
    const Bytes code = encoded(text, dst, src, state);
    FUZZ_CHECK(code == oracle::rleEncoded(text));
    checkInUse(code, state);
    checkDecoder(code, dst, src, state);
    return 0;
}

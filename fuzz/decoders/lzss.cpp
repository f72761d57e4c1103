// The LZSS coder in pieces of any lengths: arbitrary streams against a reference decoder, those of
// the encoder, with and without flushes, whole and damaged.
#include "ntkdc.h"
#include "oracles/lzss.h"
#include "pieces.h"

namespace {

constexpr std::size_t mostData = 1 << 18;

struct State {
    explicit State(NtkStatus (*init)(Ntk8u*)) {
        int size = 0;
        FUZZ_CHECK(ntksLZSSGetSize_8u(&size) == ntkStsNoErr);
        m_block = std::make_unique<fuzz::Block>(static_cast<std::size_t>(size), Ntk8u{0xa5});
        FUZZ_CHECK(init(data()) == ntkStsNoErr);
    }
    Ntk8u* data() const { return m_block->data(); }

private:
    std::unique_ptr<fuzz::Block> m_block;
};

struct Cuts {
    fuzz::PieceLengths src, dst;
};

fuzz::Streamed decoded(const Bytes& stream, const Cuts& cuts, const State& state) {
    return fuzz::inPieces(stream, cuts.src, cuts.dst, mostData, [&](auto... arguments) {
        return ntksDecodeLZSS_8u(arguments..., state.data());
    });
}

fuzz::Streamed decoded(const Bytes& stream, const Cuts& cuts) {
    const State state(ntksDecodeLZSSInit_8u);
    fuzz::Streamed all = decoded(stream, cuts, state);
    if (all.status < 0) { // as is every later call, until the state is initialised again
        FUZZ_CHECK(decoded({0}, cuts, state).status == ntkStsBadSrcData);
        FUZZ_CHECK(ntksDecodeLZSSInit_8u(state.data()) == ntkStsNoErr);
        FUZZ_CHECK(decoded({0, 'a', 'b'}, cuts, state).out == Bytes({'a', 'b'}));
    }
    return all;
}

void judge(const Bytes& stream, const Cuts& cuts) {
    const fuzz::Streamed whole = decoded(stream, {});
    const fuzz::Streamed cut = decoded(stream, cuts);
    const std::size_t common = std::min(whole.out.size(), cut.out.size());
    FUZZ_CHECK(std::equal(whole.out.begin(),
                          whole.out.begin() + static_cast<std::ptrdiff_t>(common),
                          cut.out.begin()));
    if (common == mostData) {
        return;
    }
    FUZZ_CHECK(whole.status == cut.status);
    FUZZ_CHECK(whole.status < 0 || whole == cut);
    try {
        FUZZ_CHECK(oracle::lzssDecoded(stream) == whole.out);
        FUZZ_CHECK(whole.status == ntkStsNoErr);
    } catch (const std::domain_error&) {
        FUZZ_CHECK(whole.status == ntkStsBadSrcData);
    } catch (const std::out_of_range&) {
        FUZZ_CHECK(whole.status == ntkStsNoErr);
    }
}

// Flushed between the parts.
Bytes encoded(const std::vector<Bytes>& parts, const Cuts& cuts) {
    const State state(ntksEncodeLZSSInit_8u);
    Bytes stream;
    const auto append = [&stream](const fuzz::Streamed& some) {
        FUZZ_CHECK(some.status == ntkStsNoErr);
        stream.insert(stream.end(), some.out.begin(), some.out.end());
    };
    for (const Bytes& part : parts) {
        append(fuzz::inPieces(part, cuts.src, cuts.dst, mostData, [&](auto... arguments) {
            return ntksEncodeLZSS_8u(arguments..., state.data());
        }));
        append(fuzz::inPieces({}, cuts.src, cuts.dst, mostData,
                              [&](Ntk8u**, int*, Ntk8u** dst, int* dstLen) {
                                  return ntksEncodeLZSSFlush_8u(dst, dstLen, state.data());
                              }));
    }
    return stream;
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const Cuts cuts{fuzz::PieceLengths(in), fuzz::PieceLengths(in)};
    if (in.flip()) {
        judge(in.rest(), cuts);
        return 0;
    }
    const Bytes marks = in.take(16);
    const Bytes first = in.take(in.word());
    const std::vector<Bytes> parts = {first, in.rest(), first};
    Bytes text;
    for (const Bytes& part : parts) {
        text.insert(text.end(), part.begin(), part.end());
    }
    Bytes stream = encoded(parts, cuts);
    FUZZ_CHECK(stream == encoded(parts, {}));
    FUZZ_CHECK(decoded(stream, cuts).out == text);
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(stream, places);
    judge(stream, cuts);
    return 0;
}

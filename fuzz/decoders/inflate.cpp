// Inflate, whole and in pieces, with zlib as the judge: arbitrary streams, those of zlib, whole and
// damaged, with and without a history.
#include "cpufeatures.h"
#include "inflatecalls.h"

namespace {

struct Cuts {
    std::size_t src, dst;
};

// After a stream, sound or not, the state serves the next one.
void decodeAnother(Inflater& inflater) {
    static const Bytes text = textBytes(300);
    static const Bytes stream = deflated(text, {});
    inflater.state.progress = 0;
    inflater.code = 0;
    inflater.codeLen = 0;
    inflater.mode = ntkInflateBlockHeader;
    const fuzz::Block dst(text.size());
    const Ntk8u* from = stream.data();
    Ntk8u* to = dst.data();
    FUZZ_CHECK(inflater.call(from, stream.size(), to, text.size()) == ntkStsNoErr);
    FUZZ_CHECK(inflater.isFinished() && dst.first(dst.size()) == text);
    FUZZ_CHECK(inflater.keptToWorkBuffer());
}

Inflated decoded(const Bytes& stream, std::size_t capacity, const Bytes* history = nullptr) {
    Inflater inflater;
    const fuzz::Block src(stream);
    const fuzz::Block dst(capacity);
    const Ntk8u* from = src.data();
    Ntk8u* to = dst.data();
    const NtkStatus status = inflater.call(from, stream.size(), to, capacity, history);
    const Verdict verdict = verdictOf(status, inflater);
    FUZZ_CHECK(status != ntkStsDstFull || to == dst.data() + capacity);
    FUZZ_CHECK(status != ntkStsNoErr || inflater.isFinished() ||
               from == src.data() + stream.size());
    FUZZ_CHECK(status >= 0 || (from == src.data() && to == dst.data()));
    const Inflated result{verdict, static_cast<std::size_t>(from - src.data()),
                          Bytes(dst.data(), to)};
    decodeAnother(inflater);
    return result;
}

// A full destination may hide the fault of the length that does not fit any more. Where source and
// destination end with the same symbol, ours asks for more source, zlib for more room.
void compare(const Inflated& found, const Inflated& expected) {
    if (found.verdict == Verdict::unfinished && expected.verdict == Verdict::destinationFull) {
        FUZZ_CHECK(found.data == expected.data && found.taken == expected.taken);
        return;
    }
    if (found.verdict == Verdict::destinationFull && expected.verdict == Verdict::malformed) {
        FUZZ_CHECK(found.data == expected.data);
        return;
    }
    FUZZ_CHECK(found.verdict == expected.verdict);
    FUZZ_CHECK(found.verdict == Verdict::malformed || found.data == expected.data);
    FUZZ_CHECK(found.verdict != Verdict::valid || found.taken == expected.taken);
}

// Zeros complete any stream: zlib and the library need not notice a fault at the same place.
void judge(Bytes stream, std::size_t capacity, Cuts cuts) {
    stream.resize(stream.size() + 300);
    const Inflated expected = zlibInflated(stream, capacity);
    compare(decoded(stream, capacity), expected);
    compare(inflatedInPieces(stream, capacity, cuts.src, cuts.dst), expected);
    constexpr std::size_t longestMatch = 258;
    if (expected.verdict == Verdict::valid) { // fits exactly
        compare(decoded(stream, expected.data.size()), expected);
    }
    if (expected.verdict == Verdict::malformed) {
        const Inflated found = decoded(stream, capacity + longestMatch);
        FUZZ_CHECK(found.verdict == Verdict::malformed);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    const std::size_t capacity = in.word();
    const Cuts cuts{1 + in.below(65), 1 + in.word() / 16U};
    if (in.flip()) {
        judge(in.rest(), capacity, cuts);
        return 0;
    }
    const Bytes marks = in.take(16);
    const ZlibOptions options{static_cast<int>(in.below(10)), static_cast<int>(in.below(5)),
                              static_cast<int>(1 + in.below(9))};
    const Bytes history = in.take(in.byte());
    const Bytes text = in.rest();
    if (!history.empty()) {
        const Inflated found = decoded(deflated(text, options, history), text.size(), &history);
        FUZZ_CHECK(found.verdict == Verdict::valid && found.data == text);
    }
    Bytes stream = deflated(text, options);
    const Inflated found = decoded(stream, text.size());
    FUZZ_CHECK(found.verdict == Verdict::valid && found.data == text);
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(stream, places);
    judge(stream, std::min(capacity, 4 * text.size()), cuts);
    return 0;
}

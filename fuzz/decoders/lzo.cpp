// The LZO1X decoders, with liblzo2 as the judge: arbitrary streams and frames, those of the
// encoder, whole and damaged.
#include <lzo/lzo1x.h>

#include "fuzz.h"
#include "guarded.h"
#include "ntkcore.h"
#include "ntkdc.h"

namespace {

struct Decoded {
    NtkStatus status;
    Bytes data;

    bool operator==(const Decoded&) const = default;
};

Decoded decoded(NtkStatus (*decoder)(const Ntk8u*, Ntk32u, Ntk8u*, Ntk32u*), const Bytes& stream,
                std::size_t capacity) {
    const GuardedBlock src(stream);
    const GuardedBlock dst(capacity);
    auto length = static_cast<Ntk32u>(capacity);
    const NtkStatus status =
        decoder(src.data(), static_cast<Ntk32u>(stream.size()), dst.data(), &length);
    if (status != ntkStsNoErr) {
        FUZZ_CHECK(status == ntkStsDstTooSmall || status == ntkStsBadSrcData);
        FUZZ_CHECK(length == capacity);
        return {status, {}};
    }
    FUZZ_CHECK(length <= capacity);
    return {status, Bytes(dst.data(), dst.data() + length)};
}

Decoded decodedByBoth(const Bytes& stream, std::size_t capacity) {
    const Decoded fast = decoded(ntksDecodeLZO_8u, stream, capacity);
    FUZZ_CHECK(fast == decoded(ntksDecodeLZOSafe_8u, stream, capacity));
    return fast;
}

Ntk32u number(const Bytes& bytes, std::size_t at) {
    Ntk32u value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = value << 8 | (at + i < bytes.size() ? bytes[at + i] : 0U);
    }
    return value;
}

// False for what liblzo2 rejects; the frame's streams, one after the other.
bool isDecoded(const Ntk8u* src, std::size_t srcLen, std::size_t capacity, Bytes& data) {
    const fuzz::Block dst(capacity);
    lzo_uint length = capacity;
    const bool isSound =
        lzo1x_decompress_safe(src, srcLen, dst.data(), &length, nullptr) == LZO_E_OK;
    if (isSound) {
        data.insert(data.end(), dst.data(), dst.data() + length);
    }
    return isSound;
}

// A frame is the mark, the number of streams, the lengths of each and of its data, the streams.
bool isFrameDecoded(const Bytes& frame, std::size_t capacity, Bytes& data) {
    const std::size_t count = number(frame, 3);
    std::size_t at = 7 + 8 * count;
    if (count < 2 || count > 64 || at > frame.size()) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t encoded = number(frame, 7 + 8 * i);
        const std::size_t expected = data.size() + number(frame, 11 + 8 * i);
        if (encoded > frame.size() - at || expected > capacity ||
            !isDecoded(frame.data() + at, encoded, expected - data.size(), data) ||
            data.size() != expected) {
            return false;
        }
        at += encoded;
    }
    return at == frame.size();
}

void judge(const Bytes& stream, std::size_t capacity) {
    static const Bytes mark = {0x11, 0, 0};
    const Decoded found = decodedByBoth(stream, capacity);
    const bool isFrame =
        stream.size() > mark.size() && std::equal(mark.begin(), mark.end(), stream.begin());
    Bytes data;
    const bool isSound = isFrame ? isFrameDecoded(stream, capacity, data)
                                 : isDecoded(stream.data(), stream.size(), capacity, data);
    FUZZ_CHECK((found.status == ntkStsNoErr) == isSound);
    FUZZ_CHECK(!isSound || found.data == data);
}

Bytes encoded(NtkLZOMethod method, const Bytes& text) {
    const auto longest = static_cast<Ntk32u>(text.size());
    Ntk32u stateBytes = 0;
    FUZZ_CHECK(ntksEncodeLZOGetSize(method, longest, &stateBytes) == ntkStsNoErr);
    const fuzz::Block state(stateBytes);
    FUZZ_CHECK(ntksEncodeLZOInit_8u(method, longest, state.data()) == ntkStsNoErr);
    const GuardedBlock src(text);
    const GuardedBlock dst(text.size() + text.size() / 16 + 67 + 7 + 75 * 4);
    auto length = static_cast<Ntk32u>(dst.size());
    FUZZ_CHECK(ntksEncodeLZO_8u(src.data(), longest, dst.data(), &length, state.data()) ==
               ntkStsNoErr);
    return Bytes(dst.data(), dst.data() + length);
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    static const bool isInitialised = lzo_init() == LZO_E_OK && ntkSetNumThreads(2) >= 0;
    FUZZ_CHECK(isInitialised);
    fuzz::Input in(data, size);
    const std::size_t capacity = in.word();
    const unsigned kind = in.below(8);
    if (kind < 4) {
        judge(in.rest(), capacity);
        return 0;
    }
    const Bytes marks = in.take(16);
    Bytes text = in.rest();
    if (kind == 7 && !text.empty()) { // long enough for a frame
        const Bytes part = text;
        while (text.size() < 2 * 32768) {
            text.insert(text.end(), part.begin(), part.end());
        }
    }
    Bytes stream = encoded(kind == 4 ? ntkLZOST : kind == 5 ? ntkLZOST1X : ntkLZOMT, text);
    FUZZ_CHECK(decodedByBoth(stream, text.size()).data == text);
    judge(stream, text.size());
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(stream, places);
    judge(stream, std::min(capacity, 2 * text.size()));
    return 0;
}

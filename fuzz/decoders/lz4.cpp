// The decoder of LZ4 blocks, with liblz4 as the judge: arbitrary blocks, those of the encoder,
// whole and damaged.
#include <lz4.h>

#include "dc/lz4/blockreader.h"
#include "fuzz.h"
#include "guarded.h"
#include "lz4calls.h"

namespace {

struct Decoded {
    NtkStatus status;
    Bytes data;
};

Decoded decoded(const Bytes& block, std::size_t capacity) {
    const GuardedBlock src(block);
    const GuardedBlock dst(capacity);
    int length = dst.size();
    const NtkStatus status = ntksDecodeLZ4_8u(src.data(), src.size(), dst.data(), &length);
    if (status != ntkStsNoErr) {
        FUZZ_CHECK(status == ntkStsDstTooSmall || status == ntkStsBadSrcData);
        FUZZ_CHECK(length == dst.size());
        return {status, {}};
    }
    FUZZ_CHECK(0 <= length && length <= dst.size());
    return {status, Bytes(dst.data(), dst.data() + length)};
}

// The bytes that a distance of 0 decodes to are undefined. It is the one fault for which the reader
// stops in a block that liblz4 decodes.
bool isDefined(const Bytes& block) {
    ntk::lz4::BlockReader reader(block.data(), block.size());
    ntk::lz4::Sequence sequence{};
    while (reader.next(sequence)) {
        if (sequence.matchLength == 0) {
            return true;
        }
    }
    return false;
}

void judge(const Bytes& block, std::size_t capacity) {
    const Decoded found = decoded(block, capacity);
    fuzz::Block expected(capacity);
    const int length = LZ4_decompress_safe(reinterpret_cast<const char*>(block.data()),
                                           reinterpret_cast<char*>(expected.data()),
                                           static_cast<int>(block.size()), expected.size());
    FUZZ_CHECK((found.status == ntkStsNoErr) == (length >= 0));
    if (length >= 0) {
        FUZZ_CHECK(found.data.size() == static_cast<std::size_t>(length));
        FUZZ_CHECK(found.data == expected.first(length) || !isDefined(block));
    }
    if (found.status == ntkStsDstTooSmall) {
        const std::size_t room = 255 * block.size() + 64;
        const Decoded whole = decoded(block, room);
        FUZZ_CHECK(whole.status == ntkStsNoErr && whole.data.size() > capacity);
    }
}

Bytes encoded(const Bytes& data) {
    static Lz4Tables tables;
    tables.clear();
    const fuzz::Block src(data);
    const fuzz::Block dst(data.size() + data.size() / 255 + 16);
    int length = dst.size();
    FUZZ_CHECK(ntksEncodeLZ4_8u(src.data(), src.size(), dst.data(), &length, tables.hash()) ==
               ntkStsNoErr);
    return dst.first(length);
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const std::size_t capacity = in.word();
    if (in.flip()) {
        judge(in.rest(), capacity);
        return 0;
    }
    const Bytes marks = in.take(16);
    const Bytes text = in.rest();
    Bytes block = encoded(text);
    FUZZ_CHECK(decoded(block, text.size()).data == text);
    fuzz::Input places(marks.data(), marks.size());
    fuzz::damage(block, places);
    judge(block, std::min(capacity, 2 * text.size()));
    return 0;
}

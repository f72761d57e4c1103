// The library's inflater against zlib's and libdeflate's, on what zlib makes of the data. zlib's
// inflater can be cut anywhere, as ours; libdeflate's takes whole streams only. In the row with
// pieces our stream is cut, the others' not.

#include <algorithm>
#include <limits>
#include <memory>

#include <libdeflate.h>
#include <zlib.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

struct Stream {
    const char* name;
    int level;
    int strategy;
    int piece = std::numeric_limits<int>::max();
};
const Stream streams[] = {
    {"level 1", 1, Z_DEFAULT_STRATEGY},   {"level 6", 6, Z_DEFAULT_STRATEGY},
    {"level 9", 9, Z_DEFAULT_STRATEGY},   {"fixed codes, level 1", 1, Z_FIXED},
    {"fixed codes, level 9", 9, Z_FIXED}, {"level 6, pieces of 4096", 6, Z_DEFAULT_STRATEGY, 4096}};

void point(z_stream& z, const Bytes& from, Bytes& to) {
    z.next_in = const_cast<Ntk8u*>(from.data());
    z.avail_in = static_cast<uInt>(from.size());
    z.next_out = to.data();
    z.avail_out = static_cast<uInt>(to.size());
}

Bytes deflated(const Bytes& data, const Stream& stream) {
    z_stream z{};
    deflateInit2(&z, stream.level, Z_DEFLATED, -MAX_WBITS, 8, stream.strategy);
    Bytes bytes(deflateBound(&z, static_cast<uLong>(data.size())));
    point(z, data, bytes);
    deflate(&z, Z_FINISH);
    bytes.resize(z.total_out);
    deflateEnd(&z);
    return bytes;
}

// Decodes in pieces of at most so many bytes of source and of destination.
void decodeOwn(NtksInflateState& state, const Bytes& stream, Bytes& data, int piece) {
    const Ntk8u* src = stream.data();
    Ntk8u* dst = data.data();
    Ntk32u code = 0;
    int codeLen = 0;
    int mode = ntkInflateBlockHeader;
    state.progress = 0;
    while (mode != ntkInflateFinished) {
        int srcLen = std::min(piece, static_cast<int>(stream.data() + stream.size() - src));
        int dstLen = std::min(piece, static_cast<int>(data.data() + data.size() - dst));
        must(ntksInflate_8u(&src, &srcLen, &code, &codeLen, nullptr, &dst, &dstLen, 0, &mode,
                            &state));
    }
}

void compareStream(const Run& run, const Stream& stream) {
    const Bytes bytes = deflated(run.data, stream);
    Bytes decoded(run.data.size());
    Bytes work = sized(ntksInflateGetSize_8u);
    NtksInflateState state;
    must(ntksInflateInit_8u(&state, work.data()));
    z_stream z{};
    inflateInit2(&z, -MAX_WBITS);
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> d(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    const auto decodeWithZlib = [&] {
        inflateReset(&z);
        point(z, bytes, decoded);
        inflate(&z, Z_FINISH);
    };
    const auto decodeWithLibdeflate = [&] {
        libdeflate_deflate_decompress(d.get(), bytes.data(), bytes.size(), decoded.data(),
                                      decoded.size(), nullptr);
    };
    run.decodersSideBySide(stream.name, decoded,
                           {{"", [&] { decodeOwn(state, bytes, decoded, stream.piece); }},
                            {"zlib", decodeWithZlib},
                            {"libdeflate", decodeWithLibdeflate}});
    inflateEnd(&z);
}

void compareInflate(Run& run) {
    for (const Stream& stream : streams) {
        compareStream(run, stream);
    }
}

} // namespace

const Comparison inflateComparison = {"inflate",
                                      "inflate with zlib and libdeflate, on zlib's streams",
                                      {"book1", "pic"},
                                      102400,
                                      200,
                                      compareInflate};

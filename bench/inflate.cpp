// The library's inflater on what zlib makes of the data: whole streams against zlib and libdeflate,
// streams in pieces against zlib and libisal, which can be cut anywhere, as ours. All get the same
// pieces of the source and of the destination, and a state that served the stream before.

#include <algorithm>
#include <limits>
#include <memory>

#include <isa-l/igzip_lib.h>
#include <libdeflate.h>
#include <zlib.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

constexpr std::size_t whole = std::numeric_limits<int>::max();

struct Stream {
    const char* name;
    int level;
    int strategy;
    std::size_t piece = whole;
};
const Stream streams[] = {{"level 1", 1, Z_DEFAULT_STRATEGY},
                          {"level 6", 6, Z_DEFAULT_STRATEGY},
                          {"level 9", 9, Z_DEFAULT_STRATEGY},
                          {"fixed codes, level 1", 1, Z_FIXED},
                          {"fixed codes, level 9", 9, Z_FIXED},
                          {"level 1, pieces of 4096", 1, Z_DEFAULT_STRATEGY, 4096},
                          {"level 6, pieces of 4096", 6, Z_DEFAULT_STRATEGY, 4096},
                          {"level 9, pieces of 4096", 9, Z_DEFAULT_STRATEGY, 4096}};

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

// What is left of a stream and of the data it decodes to, cut into pieces.
struct Pieces {
    const Ntk8u* src;
    const Ntk8u* srcEnd;
    Ntk8u* dst;
    Ntk8u* dstEnd;
    std::size_t most;

    Pieces(const Bytes& stream, Bytes& data, std::size_t piece)
        : src(stream.data()), srcEnd(src + stream.size()), dst(data.data()),
          dstEnd(dst + data.size()), most(piece) {}

    int srcLen() const { return static_cast<int>(std::min<std::size_t>(most, srcEnd - src)); }
    int dstLen() const { return static_cast<int>(std::min<std::size_t>(most, dstEnd - dst)); }
};

void decodeOwn(NtksInflateState& state, Pieces p) {
    Ntk32u code = 0;
    int codeLen = 0;
    int mode = ntkInflateBlockHeader;
    state.progress = 0;
    while (mode != ntkInflateFinished) {
        int srcLen = p.srcLen();
        int dstLen = p.dstLen();
        must(ntksInflate_8u(&p.src, &srcLen, &code, &codeLen, nullptr, &p.dst, &dstLen, 0, &mode,
                            &state));
    }
}

void decodeWithZlib(z_stream& z, Pieces p) {
    inflateReset(&z);
    for (int status = Z_OK; status == Z_OK;) {
        z.next_in = const_cast<Ntk8u*>(p.src);
        z.avail_in = static_cast<uInt>(p.srcLen());
        z.next_out = p.dst;
        z.avail_out = static_cast<uInt>(p.dstLen());
        status = inflate(&z, p.most == whole ? Z_FINISH : Z_NO_FLUSH);
        p.src = z.next_in;
        p.dst = z.next_out;
    }
}

void decodeWithIsal(inflate_state& state, Pieces p) {
    isal_inflate_reset(&state);
    for (int status = ISAL_DECOMP_OK;
         status == ISAL_DECOMP_OK && state.block_state != ISAL_BLOCK_FINISH;) {
        state.next_in = const_cast<Ntk8u*>(p.src);
        state.avail_in = static_cast<Ntk32u>(p.srcLen());
        state.next_out = p.dst;
        state.avail_out = static_cast<Ntk32u>(p.dstLen());
        status = isal_inflate(&state);
        p.src = state.next_in;
        p.dst = state.next_out;
    }
}

// On the heap: it is 85 KiB long.
std::unique_ptr<inflate_state> isalState() {
    auto state = std::make_unique<inflate_state>();
    isal_inflate_init(state.get());
    return state;
}

void compareStream(const Run& run, const Stream& stream) {
    const Bytes bytes = deflated(run.data, stream);
    Bytes decoded(run.data.size());
    Bytes work = sized(ntksInflateGetSize_8u);
    NtksInflateState state;
    must(ntksInflateInit_8u(&state, work.data()));
    z_stream z{};
    inflateInit2(&z, -MAX_WBITS);
    const auto isal = isalState();
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> d(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    const auto decodeWithLibdeflate = [&] {
        libdeflate_deflate_decompress(d.get(), bytes.data(), bytes.size(), decoded.data(),
                                      decoded.size(), nullptr);
    };
    const auto pieces = [&] { return Pieces(bytes, decoded, stream.piece); };
    const bool isWhole = stream.piece == whole;
    run.decodersSideBySide(stream.name, decoded,
                           {{"", [&] { decodeOwn(state, pieces()); }},
                            {"zlib", [&] { decodeWithZlib(z, pieces()); }},
                            isWhole
                                ? Variant{"libdeflate", decodeWithLibdeflate}
                                : Variant{"libisal", [&] { decodeWithIsal(*isal, pieces()); }}});
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
                                      {"book1", "geo", "pic"},
                                      102400,
                                      200,
                                      compareInflate};

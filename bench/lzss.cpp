// The library's LZSS coders beside liblz4's high-compression encoder (level 9) and decoder. No
// packaged library has this format: the comparison is for orientation.

#include <lz4hc.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

void compareLzss(Run& run) {
    Bytes& data = run.data;
    Bytes state = sized(ntksLZSSGetSize_8u);
    Bytes stream(2 * data.size() + 1000), block(stream.size());
    Bytes decoded(data.size());
    Ntk8u *src = nullptr, *dst = nullptr; // the calls move both on
    int srcLen = 0, dstLen = 0, streamLen = 0, blockLen = 0;

    const auto encode = [&] {
        must(ntksEncodeLZSS_8u(&src, &srcLen, &dst, &dstLen, state.data()));
        must(ntksEncodeLZSSFlush_8u(&dst, &dstLen, state.data()));
        streamLen = lengthOf(stream) - dstLen;
    };
    const auto beginEncoding = [&] {
        must(ntksEncodeLZSSInit_8u(state.data()));
        src = data.data(), srcLen = lengthOf(data);
        dst = stream.data(), dstLen = lengthOf(stream);
    };
    const auto encodeOther = [&] {
        blockLen = LZ4_compress_HC(chars(data), chars(block), lengthOf(data), lengthOf(block), 9);
    };
    run.sideBySide("ntksEncodeLZSS_8u", data.size(),
                   {{"", encode, beginEncoding, [&] { return streamLen; }},
                    {"LZ4_compress_HC, level 9", encodeOther, {}, [&] { return blockLen; }}});

    const auto decode = [&] {
        must(ntksDecodeLZSS_8u(&src, &srcLen, &dst, &dstLen, state.data()));
    };
    const auto beginDecoding = [&] {
        must(ntksDecodeLZSSInit_8u(state.data()));
        src = stream.data(), srcLen = streamLen;
        dst = decoded.data(), dstLen = lengthOf(decoded);
    };
    const auto decodeOther = [&] {
        LZ4_decompress_safe(chars(block), chars(decoded), blockLen, lengthOf(decoded));
    };
    run.decodersSideBySide("ntksDecodeLZSS_8u", decoded,
                           {{"", decode, beginDecoding}, {"LZ4_decompress_safe", decodeOther}});
}

} // namespace

const Comparison lzssComparison = {
    "lzss",
    "LZSS with liblz4's HC encoder and its decoder, for orientation: another format",
    {"book1", "pic"},
    102400,
    200,
    compareLzss};

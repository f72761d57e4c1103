// The library's LZO calls against the liblzo2 calls underneath.

#include <lzo/lzo1x.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

struct Encoder {
    const char* name;
    NtkLZOMethod method;
    const char* otherName;
    decltype(&lzo1x_1_compress) other;
};
const Encoder encoders[] = {
    {"ntksEncodeLZO_8u, ST", ntkLZOST, "lzo1x_1_compress", lzo1x_1_compress},
    {"ntksEncodeLZO_8u, MT", ntkLZOMT, "lzo1x_1_compress", lzo1x_1_compress},
    {"ntksEncodeLZO_8u, ST1X", ntkLZOST1X, "lzo1x_1_11_compress", lzo1x_1_11_compress},
};

struct Decoder {
    const char* name;
    decltype(&ntksDecodeLZO_8u) decode;
};
const Decoder decoders[] = {{"ntksDecodeLZO_8u", ntksDecodeLZO_8u},
                            {"ntksDecodeLZOSafe_8u", ntksDecodeLZOSafe_8u}};

Bytes stateFor(NtkLZOMethod method, Ntk32u size) {
    Ntk32u stateBytes = 0;
    must(ntksEncodeLZOGetSize(method, size, &stateBytes));
    Bytes state(stateBytes);
    must(ntksEncodeLZOInit_8u(method, size, state.data()));
    return state;
}

void compareLzo(Run& run) {
    const Bytes& data = run.data;
    const auto size = static_cast<Ntk32u>(data.size());
    Bytes stream(2 * data.size() + 1000), decoded(data.size());
    Bytes work(LZO1X_1_MEM_COMPRESS);
    Ntk32u length = 0;
    lzo_uint otherLength = 0;
    for (const Encoder& e : encoders) {
        Bytes state = stateFor(e.method, size);
        const auto encode = [&] {
            must(ntksEncodeLZO_8u(data.data(), size, stream.data(), &length, state.data()));
        };
        const auto makeRoom = [&] { length = static_cast<Ntk32u>(stream.size()); };
        const auto encodeOther = [&] {
            e.other(data.data(), size, stream.data(), &otherLength, work.data());
        };
        run.sideBySide(e.name, size,
                       {{"", encode, makeRoom, [&] { return length; }},
                        {e.otherName, encodeOther, {}, [&] { return otherLength; }}});
    }

    lzo_uint streamLen = 0;
    lzo1x_1_compress(data.data(), size, stream.data(), &streamLen, work.data());
    const auto decodeOther = [&] {
        lzo1x_decompress_safe(stream.data(), streamLen, decoded.data(), &otherLength, nullptr);
    };
    const auto makeOtherRoom = [&] { otherLength = size; };
    for (const Decoder& d : decoders) {
        const auto decode = [&] {
            must(d.decode(stream.data(), static_cast<Ntk32u>(streamLen), decoded.data(), &length));
        };
        run.decodersSideBySide(d.name, decoded,
                               {{"", decode, [&] { length = size; }},
                                {"lzo1x_decompress_safe", decodeOther, makeOtherRoom}});
    }
}

} // namespace

const Comparison lzoComparison = {
    "lzo", "LZO with the calls of liblzo2 underneath", {"book1", "pic"}, 102400, 1000, compareLzo};

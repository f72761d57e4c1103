// The library's LZO calls against the liblzo2 calls underneath, on the first 100 KiB of each file
// given.
//
// Usage: bench_lzo_ratio FILE...

#include <lzo/lzo1x.h>

#include <fstream>
#include <iterator>

#include "contest.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

constexpr std::size_t mostBytes = 102400;
constexpr int rounds = 2000;

struct Subject {
    const char* name;
    NtkLZOMethod method;
    const char* packagedName;
    int (*packaged)(const lzo_bytep, lzo_uint, lzo_bytep, lzo_uintp, lzo_voidp);
};
const Subject subjects[] = {
    {"ntksEncodeLZO ST", ntkLZOST, "lzo1x_1_compress", lzo1x_1_compress},
    {"ntksEncodeLZO MT", ntkLZOMT, "lzo1x_1_compress", lzo1x_1_compress},
    {"ntksEncodeLZO ST1X", ntkLZOST1X, "lzo1x_1_11_compress", lzo1x_1_11_compress},
};

struct Decoder {
    const char* name;
    NtkStatus (*decode)(const Ntk8u*, Ntk32u, Ntk8u*, Ntk32u*);
};
const Decoder decoders[] = {{"ntksDecodeLZO", ntksDecodeLZO_8u},
                            {"ntksDecodeLZOSafe", ntksDecodeLZOSafe_8u}};

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(file), {});
    bytes.resize(std::min(bytes.size(), mostBytes));
    return bytes;
}

Bytes stateFor(NtkLZOMethod method, Ntk32u size) {
    Ntk32u stateBytes = 0;
    ntksEncodeLZOGetSize(method, size, &stateBytes);
    Bytes state(stateBytes);
    ntksEncodeLZOInit_8u(method, size, state.data());
    return state;
}

void compareEncoders(const Bytes& data) {
    const auto size = static_cast<Ntk32u>(data.size());
    Bytes stream(2 * data.size() + 1000);
    Bytes work(LZO1X_1_MEM_COMPRESS);
    for (const Subject& s : subjects) {
        Bytes state = stateFor(s.method, size);
        Ntk32u length = 0;
        lzo_uint packagedLength = 0;
        std::vector<Contender> contenders = {
            {"", [&] { ntksEncodeLZO_8u(data.data(), size, stream.data(), &length, state.data()); },
             [&] { length = static_cast<Ntk32u>(stream.size()); }},
            {s.packagedName,
             [&] { s.packaged(data.data(), size, stream.data(), &packagedLength, work.data()); }}};
        compete(contenders, rounds);
        printRatio(s.name, data.size(), data.size(), contenders);
    }
}

void compareDecoders(const Bytes& data) {
    const auto size = static_cast<Ntk32u>(data.size());
    Bytes stream(2 * data.size() + 1000);
    Bytes work(LZO1X_1_MEM_COMPRESS);
    lzo_uint streamLen = 0;
    lzo1x_1_compress(data.data(), size, stream.data(), &streamLen, work.data());
    Bytes decoded(data.size());
    for (const Decoder& d : decoders) {
        Ntk32u length = 0;
        lzo_uint packagedLength = 0;
        std::vector<Contender> contenders = {
            {"",
             [&] {
                 d.decode(stream.data(), static_cast<Ntk32u>(streamLen), decoded.data(), &length);
             },
             [&] { length = size; }},
            {"lzo1x_decompress_safe",
             [&] {
                 lzo1x_decompress_safe(stream.data(), streamLen, decoded.data(), &packagedLength,
                                       nullptr);
             },
             [&] { packagedLength = size; }}};
        compete(contenders, rounds);
        printRatio(d.name, data.size(), data.size(), contenders);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "Usage: bench_lzo_ratio FILE...\n");
        return 1;
    }
    for (int i = 1; i < argc; ++i) {
        const Bytes data = readFile(argv[i]);
        if (data.empty()) {
            std::fprintf(stderr, "%s: cannot be read or is empty\n", argv[i]);
            return 1;
        }
        std::printf("%s\n", argv[i]);
        printRatioTitle();
        compareEncoders(data);
        compareDecoders(data);
    }
    return 0;
}

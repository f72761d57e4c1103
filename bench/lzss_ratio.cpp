// The library's LZSS coders beside liblz4's high-compression encoder (level 9) and decoder, on the
// first 100 KiB of each file given. No packaged library has this format: the comparison is for
// orientation.
//
// Usage: bench_lzss_ratio FILE...

#include <lz4hc.h>

#include <fstream>
#include <iterator>

#include "contest.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

constexpr std::size_t mostBytes = 102400;
constexpr int rounds = 300;

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(file), {});
    bytes.resize(std::min(bytes.size(), mostBytes));
    return bytes;
}

char* chars(Bytes& bytes) {
    return reinterpret_cast<char*>(bytes.data());
}

// One coder's arguments, which its calls move on.
struct Arguments {
    Ntk8u* src = nullptr;
    int srcLen = 0;
    Ntk8u* dst = nullptr;
    int dstLen = 0;

    void point(Bytes& from, int fromLen, Bytes& to) {
        src = from.data();
        srcLen = fromLen;
        dst = to.data();
        dstLen = static_cast<int>(to.size());
    }
};

void compare(Bytes& data) {
    const int size = static_cast<int>(data.size());
    int stateBytes = 0;
    ntksLZSSGetSize_8u(&stateBytes);
    Bytes state(static_cast<std::size_t>(stateBytes));
    Bytes stream(2 * data.size() + 1000);
    Bytes block(stream.size());
    Bytes decoded(data.size());
    Arguments a;
    int blockLen = 0;
    std::vector<Contender> contenders = {
        {"",
         [&] {
             ntksEncodeLZSS_8u(&a.src, &a.srcLen, &a.dst, &a.dstLen, state.data());
             ntksEncodeLZSSFlush_8u(&a.dst, &a.dstLen, state.data());
         },
         [&] {
             ntksEncodeLZSSInit_8u(state.data());
             a.point(data, size, stream);
         }},
        {"LZ4_compress_HC", [&] {
             blockLen = LZ4_compress_HC(chars(data), chars(block), size,
                                        static_cast<int>(block.size()), 9);
         }}};
    compete(contenders, rounds);
    printRatio("ntksEncodeLZSS", data.size(), data.size(), contenders);
    const auto streamLen = static_cast<int>(a.dst - stream.data());

    contenders = {{"",
                   [&] { ntksDecodeLZSS_8u(&a.src, &a.srcLen, &a.dst, &a.dstLen, state.data()); },
                   [&] {
                       ntksDecodeLZSSInit_8u(state.data());
                       a.point(stream, streamLen, decoded);
                   }},
                  {"LZ4_decompress_safe",
                   [&] { LZ4_decompress_safe(chars(block), chars(decoded), blockLen, size); }}};
    compete(contenders, rounds);
    printRatio("ntksDecodeLZSS", data.size(), data.size(), contenders);
    std::printf("compressed to: LZSS %d, LZ4 %d bytes\n", streamLen, blockLen);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "Usage: bench_lzss_ratio FILE...\n");
        return 1;
    }
    for (int i = 1; i < argc; ++i) {
        Bytes data = readFile(argv[i]);
        if (data.empty()) {
            std::fprintf(stderr, "%s: cannot be read or is empty\n", argv[i]);
            return 1;
        }
        std::printf("%s\n", argv[i]);
        printRatioTitle();
        compare(data);
    }
    return 0;
}

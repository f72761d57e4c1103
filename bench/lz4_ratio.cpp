// The library's LZ4 calls against the liblz4 calls underneath, on the file given or on text made
// here: whole buffers, and the second half of a buffer with the first as dictionary.

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <utility>

#include <lz4.h>
#include <lz4hc.h>

#include "contest.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

Bytes madeText(std::size_t size) {
    static const char* const words[] = {"time ", "flow ", "of ", "the ",   "current ", "and, ",
                                        "a ",    "bank ", "in ", "rain\n", "slowly ",  "under "};
    std::mt19937 generator(7);
    std::string text;
    while (text.size() < size) {
        text += words[generator() % std::size(words)];
        text += static_cast<char>('a' + generator() % 26);
    }
    return Bytes(text.begin(), text.end());
}

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

char* chars(Bytes& bytes) {
    return reinterpret_cast<char*>(bytes.data());
}

// The data and room for what the calls make of them, shared by both sides of a contest.
struct Buffers {
    explicit Buffers(Bytes source)
        : data(std::move(source)), size(static_cast<int>(data.size())),
          block(static_cast<std::size_t>(LZ4_compressBound(size))),
          capacity(static_cast<int>(block.size())) {}

    Bytes data;
    int size;
    Bytes block;
    int capacity;
    int length = 0; // in/out argument of the calls
};

Bytes hashTable() {
    int size = 0;
    ntksEncodeLZ4HashTableGetSize_8u(&size);
    return Bytes(static_cast<std::size_t>(size));
}

void compareEncoder(Buffers& b, int rounds) {
    Bytes table = hashTable();
    LZ4_stream_t stream;
    std::vector<Contender> contenders = {
        {"",
         [&] { ntksEncodeLZ4_8u(b.data.data(), b.size, b.block.data(), &b.length, table.data()); },
         [&] { b.length = b.capacity; }},
        {"LZ4_compress_fast_extState", [&] {
             LZ4_compress_fast_extState(&stream, chars(b.data), chars(b.block), b.size, b.capacity,
                                        1);
         }}};
    compete(contenders, rounds);
    printRatio("ntksEncodeLZ4_8u", b.data.size(), b.data.size(), contenders);
}

// Both sides begin with a state that has seen the first half.
void compareDictEncoder(Buffers& b, int rounds) {
    const int half = b.size - b.size / 2;
    Ntk8u* const second = b.data.data() + half;
    Bytes primedTable = hashTable();
    b.length = b.capacity;
    ntksEncodeLZ4Dict_8u(b.data.data(), 0, half, b.block.data(), &b.length, primedTable.data(),
                         nullptr, 0);
    LZ4_stream_t primedStream;
    LZ4_initStream(&primedStream, sizeof primedStream);
    LZ4_compress_fast_continue(&primedStream, chars(b.data), chars(b.block), half, b.capacity, 1);

    Bytes table;
    LZ4_stream_t stream;
    std::vector<Contender> contenders = {
        {"",
         [&] {
             ntksEncodeLZ4Dict_8u(second, half, b.size - half, b.block.data(), &b.length,
                                  table.data(), b.data.data(), half);
         },
         [&] {
             table = primedTable;
             b.length = b.capacity;
         }},
        {"LZ4_compress_fast_continue",
         [&] {
             LZ4_compress_fast_continue(&stream, reinterpret_cast<const char*>(second),
                                        chars(b.block), b.size - half, b.capacity, 1);
         },
         [&] { std::memcpy(&stream, &primedStream, sizeof stream); }}};
    compete(contenders, rounds);
    printRatio("ntksEncodeLZ4Dict_8u", b.data.size(), b.data.size() / 2, contenders);
}

void compareHcEncoder(Buffers& b, int rounds) {
    int sizes[2] = {};
    ntksEncodeLZ4HCHashTableGetSize_8u(&sizes[0], &sizes[1]);
    Bytes hash(static_cast<std::size_t>(sizes[0]));
    Bytes chain(static_cast<std::size_t>(sizes[1]));
    Ntk8u* tables[] = {hash.data(), chain.data()};
    const auto stream = std::make_unique<LZ4_streamHC_t>();
    int srcLen = b.size;
    std::vector<Contender> contenders = {
        {"",
         [&] {
             ntksEncodeLZ4HC_8u(b.data.data(), 0, &srcLen, b.block.data(), &b.length, tables,
                                nullptr, 0, 0);
         },
         [&] { b.length = b.capacity; }},
        {"LZ4_compress_HC_extStateHC", [&] {
             LZ4_compress_HC_extStateHC(stream.get(), chars(b.data), chars(b.block), b.size,
                                        b.capacity, 0);
         }}};
    compete(contenders, rounds);
    printRatio("ntksEncodeLZ4HC_8u", b.data.size(), b.data.size(), contenders);
}

void compareDecoder(Buffers& b, int rounds) {
    const int blockLen = LZ4_compress_default(chars(b.data), chars(b.block), b.size, b.capacity);
    Bytes decoded(b.data.size());
    std::vector<Contender> contenders = {
        {"", [&] { ntksDecodeLZ4_8u(b.block.data(), blockLen, decoded.data(), &b.length); },
         [&] { b.length = b.size; }},
        {"LZ4_decompress_safe",
         [&] { LZ4_decompress_safe(chars(b.block), chars(decoded), blockLen, b.size); }}};
    compete(contenders, rounds);
    printRatio("ntksDecodeLZ4_8u", b.data.size(), static_cast<std::size_t>(blockLen), contenders);
}

} // namespace

int main(int argc, char** argv) {
    const Bytes all = argc > 1 ? readFile(argv[1]) : madeText(262144);
    if (all.empty()) {
        std::printf("%s: cannot be read or is empty\n", argv[1]);
        return 1;
    }
    printRatioTitle();
    for (const std::size_t size : {16384, 65536, 262144}) {
        const auto length = static_cast<std::ptrdiff_t>(std::min<std::size_t>(size, all.size()));
        Buffers buffers(Bytes(all.begin(), all.begin() + length));
        compareEncoder(buffers, 1000);
        compareDictEncoder(buffers, 1000);
        compareHcEncoder(buffers, 50);
        compareDecoder(buffers, 1000);
        if (size >= all.size()) {
            break;
        }
    }
    return 0;
}

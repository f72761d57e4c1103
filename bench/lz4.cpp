// The library's LZ4 calls against the liblz4 calls underneath: whole buffers, and the second half
// of a buffer with the first as dictionary.

#include <memory>

#include <lz4.h>
#include <lz4hc.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

// The data and room for what the calls make of them, shared by both sides.
struct Buffers {
    std::string named; // for the rows: that of the data, when the file is long enough
    Bytes data;
    int size = lengthOf(data);
    Bytes block = Bytes(static_cast<std::size_t>(LZ4_compressBound(size)));
    int capacity = lengthOf(block);
    int length = 0;      // in/out argument of the library's calls
    int otherLength = 0; // what liblz4's return
};

struct Side {
    const char* name;
    std::function<int()> call; // ours returns a status, liblz4's the length of the block
    std::function<void()> prepare = [] {};
};

void compareEncoders(const Run& run, Buffers& b, int bytes, const Side& own, const Side& other) {
    const auto encode = [&] { must(own.call()); };
    const auto prepare = [&] {
        own.prepare();
        b.length = b.capacity;
    };
    const auto encodeOther = [&] { b.otherLength = other.call(); };
    run.sideBySide(own.name + b.named, static_cast<std::size_t>(bytes),
                   {{"", encode, prepare, [&] { return b.length; }},
                    {other.name, encodeOther, other.prepare, [&] { return b.otherLength; }}});
}

void compareEncoder(const Run& run, Buffers& b) {
    Bytes table = sized(ntksEncodeLZ4HashTableGetSize_8u);
    LZ4_stream_t stream;
    const auto encode = [&] {
        return ntksEncodeLZ4_8u(b.data.data(), b.size, b.block.data(), &b.length, table.data());
    };
    const auto encodeOther = [&] {
        return LZ4_compress_fast_extState(&stream, chars(b.data), chars(b.block), b.size,
                                          b.capacity, 1);
    };
    compareEncoders(run, b, b.size, {"ntksEncodeLZ4_8u", encode},
                    {"LZ4_compress_fast_extState", encodeOther});
}

// Both sides begin with a state that has seen the first half.
void compareDictEncoder(const Run& run, Buffers& b) {
    const int half = b.size - b.size / 2;
    const int rest = b.size - half;
    Bytes primed = sized(ntksEncodeLZ4HashTableGetSize_8u);
    b.length = b.capacity;
    must(ntksEncodeLZ4Dict_8u(b.data.data(), 0, half, b.block.data(), &b.length, primed.data(),
                              nullptr, 0));
    LZ4_stream_t primedStream;
    LZ4_initStream(&primedStream, sizeof primedStream);
    LZ4_compress_fast_continue(&primedStream, chars(b.data), chars(b.block), half, b.capacity, 1);

    Bytes table;
    LZ4_stream_t stream;
    const auto encode = [&] {
        return ntksEncodeLZ4Dict_8u(b.data.data() + half, half, rest, b.block.data(), &b.length,
                                    table.data(), b.data.data(), half);
    };
    const auto encodeOther = [&] {
        return LZ4_compress_fast_continue(&stream, chars(b.data) + half, chars(b.block), rest,
                                          b.capacity, 1);
    };
    compareEncoders(run, b, rest, {"ntksEncodeLZ4Dict_8u", encode, [&] { table = primed; }},
                    {"LZ4_compress_fast_continue", encodeOther, [&] { stream = primedStream; }});
}

void compareHcEncoder(const Run& run, Buffers& b) {
    int sizes[2] = {};
    must(ntksEncodeLZ4HCHashTableGetSize_8u(&sizes[0], &sizes[1]));
    Bytes hash(static_cast<std::size_t>(sizes[0])), chain(static_cast<std::size_t>(sizes[1]));
    Ntk8u* tables[] = {hash.data(), chain.data()};
    const auto stream = std::make_unique<LZ4_streamHC_t>();
    int srcLen = b.size;
    const auto encode = [&] {
        return ntksEncodeLZ4HC_8u(b.data.data(), 0, &srcLen, b.block.data(), &b.length, tables,
                                  nullptr, 0, 0);
    };
    const auto encodeOther = [&] {
        return LZ4_compress_HC_extStateHC(stream.get(), chars(b.data), chars(b.block), b.size,
                                          b.capacity, 0);
    };
    compareEncoders(run, b, b.size, {"ntksEncodeLZ4HC_8u", encode},
                    {"LZ4_compress_HC_extStateHC", encodeOther});
}

void compareDecoder(const Run& run, Buffers& b) {
    const int length = LZ4_compress_default(chars(b.data), chars(b.block), b.size, b.capacity);
    Bytes decoded(b.data.size());
    const auto decode = [&] {
        must(ntksDecodeLZ4_8u(b.block.data(), length, decoded.data(), &b.length));
    };
    const auto decodeOther = [&] {
        LZ4_decompress_safe(chars(b.block), chars(decoded), length, b.size);
    };
    run.decodersSideBySide(
        "ntksDecodeLZ4_8u" + b.named, decoded,
        {{"", decode, [&] { b.length = b.size; }}, {"LZ4_decompress_safe", decodeOther}});
}

void compareLz4(Run& run) {
    const Bytes all = run.data;
    for (std::size_t size = 16384, before = 0; before < all.size(); before = size, size *= 4) {
        run.data.assign(all.data(), all.data() + std::min(size, all.size()));
        Buffers buffers = {", " + std::to_string(size / 1024) + " KiB", run.data};
        compareEncoder(run, buffers);
        compareDictEncoder(run, buffers);
        compareHcEncoder(run, buffers);
        compareDecoder(run, buffers);
    }
}

} // namespace

const Comparison lz4Comparison = {
    "lz4",
    "LZ4, its dictionary and HC encoders with the calls of liblz4 underneath",
    {"book1", "pic"},
    262144,
    500,
    compareLz4};

// The LZ4 encoders behind one signature.
#pragma once

#include <lz4.h>

#include <vector>

#include "ntkdc.h"
#include "samples.h"

// Tables of both kinds, made empty.
struct Lz4Tables {
    Lz4Tables() {
        int sizes[3] = {};
        ntksEncodeLZ4HashTableGetSize_8u(&sizes[0]);
        ntksEncodeLZ4HCHashTableGetSize_8u(&sizes[1], &sizes[2]);
        hash.resize(static_cast<std::size_t>(sizes[0]));
        hcHash.resize(static_cast<std::size_t>(sizes[1]));
        hcChain.resize(static_cast<std::size_t>(sizes[2]));
        clear();
    }
    void clear() {
        ntksEncodeLZ4DictHashTableInit_8u(hash.data(), 0);
        ntksEncodeLZ4HCHashTableInit_8u(hc().data());
    }
    void fill(const Bytes& noise) {
        for (Bytes* const table : {&hash, &hcHash, &hcChain}) {
            for (std::size_t i = 0; i < table->size(); ++i) {
                (*table)[i] = noise[i % noise.size()];
            }
        }
    }
    std::vector<Ntk8u*> hc() { return {hcHash.data(), hcChain.data()}; }

    Bytes hash;
    Bytes hcHash;
    Bytes hcChain;
};

// One call of an encoder; encoders without a dictionary or position ignore theirs.
struct Lz4Call {
    const Ntk8u* src;
    int srcIdx;
    int srcLen;
    Ntk8u* dst;
    int dstLen;
    const Ntk8u* dict = nullptr;
    int dictLen = 0;
};

struct Lz4Encoder {
    const char* name;
    bool stopsWhenFull;
    bool takesDictionary;
    NtkStatus (*encode)(Lz4Call&, Lz4Tables&);
};

inline const Lz4Encoder lz4Encoders[] = {
    {"LZ4", false, false,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4_8u(c.src, c.srcLen, c.dst, &c.dstLen, t.hash.data());
     }},
    {"LZ4Safe", true, false,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4Safe_8u(c.src, &c.srcLen, c.dst, &c.dstLen, t.hash.data());
     }},
    {"LZ4Dict", false, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4Dict_8u(c.src, c.srcIdx, c.srcLen, c.dst, &c.dstLen, t.hash.data(),
                                     c.dict, c.dictLen);
     }},
    {"LZ4DictSafe", true, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4DictSafe_8u(c.src, c.srcIdx, &c.srcLen, c.dst, &c.dstLen,
                                         t.hash.data(), c.dict, c.dictLen);
     }},
    {"LZ4HC", true, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4HC_8u(c.src, c.srcIdx, &c.srcLen, c.dst, &c.dstLen, t.hc().data(),
                                   c.dict, c.dictLen, 0);
     }},
};

// What liblz4 makes of a block whose data have exactly the given length; empty where it refuses.
inline Bytes decodedByLiblz4(const Ntk8u* block, int blockLen, int length,
                             const Ntk8u* dict = nullptr, int dictLen = 0) {
    Bytes decoded(static_cast<std::size_t>(length) + 1);
    const int got = LZ4_decompress_safe_usingDict(
        reinterpret_cast<const char*>(block), reinterpret_cast<char*>(decoded.data()), blockLen,
        length, reinterpret_cast<const char*>(dict), dictLen);
    decoded.resize(got == length ? static_cast<std::size_t>(length) : 0);
    return decoded;
}

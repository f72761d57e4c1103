// The LZ4 encoders with a common signature.
#pragma once

#include <lz4.h>

#include <array>

#include "ntkdc.h"
#include "samples.h"

// Empty tables of both kinds, at odd addresses.
class Lz4Tables {
public:
    Lz4Tables() {
        int sizes[3] = {};
        ntksEncodeLZ4HashTableGetSize_8u(&sizes[0]);
        ntksEncodeLZ4HCHashTableGetSize_8u(&sizes[1], &sizes[2]);
        for (std::size_t i = 0; i < m_blocks.size(); ++i) {
            m_blocks[i].resize(static_cast<std::size_t>(sizes[i]) + 1);
        }
        clear();
    }
    void clear() {
        ntksEncodeLZ4DictHashTableInit_8u(hash(), 0);
        ntksEncodeLZ4HCHashTableInit_8u(hc().data());
    }
    void fill(const Bytes& noise) {
        for (Bytes& block : m_blocks) {
            for (std::size_t i = 0; i < block.size(); ++i) {
                block[i] = noise[i % noise.size()];
            }
        }
    }
    Ntk8u* hash() { return m_blocks[0].data() + 1; }
    std::array<Ntk8u*, 2> hc() { return {m_blocks[1].data() + 1, m_blocks[2].data() + 1}; }

private:
    std::array<Bytes, 3> m_blocks;
};

// The arguments of an encoder; encoders without a dictionary or position ignore these.
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
         return ntksEncodeLZ4_8u(c.src, c.srcLen, c.dst, &c.dstLen, t.hash());
     }},
    {"LZ4Safe", true, false,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4Safe_8u(c.src, &c.srcLen, c.dst, &c.dstLen, t.hash());
     }},
    {"LZ4Dict", false, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4Dict_8u(c.src, c.srcIdx, c.srcLen, c.dst, &c.dstLen, t.hash(), c.dict,
                                     c.dictLen);
     }},
    {"LZ4DictSafe", true, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4DictSafe_8u(c.src, c.srcIdx, &c.srcLen, c.dst, &c.dstLen, t.hash(),
                                         c.dict, c.dictLen);
     }},
    {"LZ4HC", true, true,
     [](Lz4Call& c, Lz4Tables& t) {
         return ntksEncodeLZ4HC_8u(c.src, c.srcIdx, &c.srcLen, c.dst, &c.dstLen, t.hc().data(),
                                   c.dict, c.dictLen, 0);
     }},
};
inline const Lz4Encoder& lz4Dict = lz4Encoders[2];
inline const Lz4Encoder& lz4Hc = lz4Encoders[4];

// The data that liblz4 decodes from a block, of exactly the given length; empty if it rejects it.
inline Bytes decodedByLiblz4(const Ntk8u* block, int blockLen, int length,
                             const Ntk8u* dict = nullptr, int dictLen = 0) {
    Bytes decoded(static_cast<std::size_t>(length) + 1);
    const int got = LZ4_decompress_safe_usingDict(
        reinterpret_cast<const char*>(block), reinterpret_cast<char*>(decoded.data()), blockLen,
        length, reinterpret_cast<const char*>(dict), dictLen);
    decoded.resize(got == length ? static_cast<std::size_t>(length) : 0);
    return decoded;
}

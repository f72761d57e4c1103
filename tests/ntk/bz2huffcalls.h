// The calls of the bzip2 Huffman coder for whole blocks.
#pragma once

#include <vector>

#include "callerblocks.h"
#include "ntkdc.h"
#include "samples.h"

using Symbols = std::vector<Ntk16u>;

// Bits pending between two calls.
struct PendingBits {
    Ntk32u code = 0;
    int count = 0;
};

// Appends the pending bits, with the last byte padded with zeros.
inline void flushBits(PendingBits bits, Bytes& bytes) {
    for (; bits.count > 0; bits.count -= 8, bits.code <<= 8) {
        bytes.push_back(static_cast<Ntk8u>(bits.code >> 24));
    }
}

struct HuffEncoder {
    HuffEncoder(const Symbols& block, int alphabet) {
        const auto blockLen = static_cast<int>(block.size());
        state = blockFor(ntksEncodeHuffGetSize_BZ2_16u8u, blockLen);
        initStatus =
            ntksEncodeHuffInit_BZ2_16u8u(alphabet, nullptr, block.data(), blockLen, state.data());
    }
    NtkStatus pack(Bytes& out) {
        return append(out, 21000, [&](Ntk8u* dst, int* length) {
            return ntksPackHuffContext_BZ2_16u8u(&bits.code, &bits.count, dst, length,
                                                 state.data());
        });
    }
    // Removes what was encoded from the front of the source.
    NtkStatus encode(Symbols& src, Bytes& out, int capacity) {
        Ntk16u* at = src.data();
        auto left = static_cast<int>(src.size());
        const NtkStatus status = append(out, capacity, [&](Ntk8u* dst, int* length) {
            return ntksEncodeHuff_BZ2_16u8u(&bits.code, &bits.count, &at, &left, dst, length,
                                            state.data());
        });
        src.erase(src.begin(), src.begin() + (at - src.data()));
        return static_cast<std::size_t>(left) == src.size() ? status : ntkStsBadSize;
    }

    PendingBits bits;
    Bytes state;
    NtkStatus initStatus;

private:
    template <class Call> static NtkStatus append(Bytes& out, int capacity, Call&& call) {
        const std::size_t before = out.size();
        out.resize(before + static_cast<std::size_t>(capacity));
        int length = capacity;
        const NtkStatus status = call(out.data() + before, &length);
        out.resize(before + static_cast<std::size_t>(status < 0 ? 0 : length));
        return status;
    }
};

// Encodes context and symbols of a block that ends with its end-of-block symbol.
inline Bytes encodedBlock(Symbols block, int alphabet, PendingBits before = {}) {
    HuffEncoder encoder(block, alphabet);
    encoder.bits = before;
    Bytes out;
    encoder.pack(out);
    encoder.encode(block, out, static_cast<int>(block.size()) * 3 + 8);
    flushBits(encoder.bits, out);
    return out;
}

struct HuffDecoder {
    explicit HuffDecoder(int alphabet) { ntksDecodeHuffInit_BZ2_8u16u(alphabet, state.data()); }
    // Both advance the source.
    NtkStatus unpack(Ntk8u*& src, int& srcLen) {
        return ntksUnpackHuffContext_BZ2_8u16u(&bits.code, &bits.count, &src, &srcLen,
                                               state.data());
    }
    NtkStatus decode(Ntk8u*& src, int& srcLen, Symbols& out, int capacity) {
        const std::size_t before = out.size();
        out.resize(before + static_cast<std::size_t>(capacity));
        int length = capacity;
        const NtkStatus status = ntksDecodeHuff_BZ2_8u16u(
            &bits.code, &bits.count, &src, &srcLen, out.data() + before, &length, state.data());
        out.resize(before + static_cast<std::size_t>(status < 0 ? 0 : length));
        return status;
    }

    PendingBits bits;
    Bytes state = blockFor(ntksDecodeHuffGetSize_BZ2_8u16u, 900000);
};

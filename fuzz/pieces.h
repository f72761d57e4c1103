// Streaming calls over sources and destinations in pieces whose lengths the input gives.
#pragma once

#include "fuzz.h"

namespace fuzz {

// The lengths of pieces, by turns.
class PieceLengths {
public:
    PieceLengths() = default; // all in one piece
    explicit PieceLengths(Input& in) : m_lengths(in.below(4)) {
        for (std::size_t& length : m_lengths) {
            length = 1 + in.byte();
        }
    }
    std::size_t next() {
        return m_lengths.empty() ? std::size_t{1} << 16 : m_lengths[m_turn++ % m_lengths.size()];
    }

private:
    std::vector<std::size_t> m_lengths;
    std::size_t m_turn = 0;
};

struct Streamed {
    NtkStatus status = 0; // of the last call
    std::size_t taken = 0;
    Bytes out;

    bool operator==(const Streamed&) const = default;
};

// Calls call(&src, &srcLen, &dst, &dstLen) until it fails, the source is taken and nothing is left
// to deliver, or `most` bytes are written. Each piece is in memory of its own, gone after the call.
template <class Call>
Streamed inPieces(const Bytes& source, PieceLengths srcLengths, PieceLengths dstLengths,
                  std::size_t most, Call call) {
    Streamed all;
    do {
        const std::size_t count = std::min(srcLengths.next(), source.size() - all.taken);
        const auto from = source.begin() + static_cast<std::ptrdiff_t>(all.taken);
        const Block src(Bytes(from, from + static_cast<std::ptrdiff_t>(count)));
        const Block dst(std::min(dstLengths.next(), most - all.out.size()));
        Ntk8u* pSrc = src.data();
        Ntk8u* pDst = dst.data();
        int srcLen = src.size();
        int dstLen = dst.size();
        all.status = call(&pSrc, &srcLen, &pDst, &dstLen);
        FUZZ_CHECK(0 <= srcLen && pSrc + srcLen == src.data() + src.size());
        FUZZ_CHECK(0 <= dstLen && pDst + dstLen == dst.data() + dst.size());
        FUZZ_CHECK(all.status != ntkStsNoErr || srcLen == 0);
        FUZZ_CHECK(all.status != ntkStsDstFull || dstLen == 0);
        FUZZ_CHECK(all.status >= 0 || (srcLen == src.size() && dstLen == dst.size()));
        all.out.insert(all.out.end(), dst.data(), pDst);
        all.taken += count - static_cast<std::size_t>(srcLen);
    } while (all.status >= 0 && all.out.size() < most &&
             (all.taken < source.size() || all.status == ntkStsDstFull));
    return all;
}

} // namespace fuzz

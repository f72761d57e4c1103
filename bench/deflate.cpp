// The library's deflate calls at every level, time and size: with fixed codes against zlib's with
// the same, and with codes made for the data against the two levels of libdeflate between whose
// sizes ours lies. These codes are made beforehand; libdeflate makes its own within the call.

#include <algorithm>
#include <cstdint>
#include <memory>

#include <libdeflate.h>
#include <zlib.h>

#include "comparison.h"
#include "dynamiccodes.h"
#include "fixedcodes.h"
#include "ntkdc.h"

namespace {

// Both steps into one stream, with the arguments that a caller sets before each.
class Encoder {
public:
    explicit Encoder(const Bytes& source)
        : m_source(source), m_lit(source.size()), m_dist(source.size()), m_dst(2 * source.size()) {}

    void prepare() {
        std::fill(m_heads.begin(), m_heads.end(), -entries);
        m_src = m_source.data();
        m_srcLen = m_capacity = static_cast<int>(m_source.size());
        m_srcIdx = m_dstIdx = m_pending = 0;
        m_code = 0;
    }
    void encode(int level) {
        must(ntksDeflateLZ77_8u(&m_src, &m_srcLen, &m_srcIdx, m_source.data(), entries,
                                m_heads.data(), m_previous.data(), entries, m_litFreq, m_distFreq,
                                m_lit.data(), m_dist.data(), &m_capacity, level, ntkDeflateFinish));
        const int count = static_cast<int>(m_source.size()) - m_capacity;
        must(ntksDeflateHuff_8u(m_lit.data(), m_dist.data(), count, &m_code, &m_pending, m_litCodes,
                                m_distCodes, m_dst.data(), &m_dstIdx));
    }
    // Gives the codes that fit what the level makes of the data.
    void useDynamicCodes(int level) {
        std::fill(std::begin(m_litFreq), std::end(m_litFreq), 0);
        std::fill(std::begin(m_distFreq), std::end(m_distFreq), 0);
        prepare();
        encode(level);
        m_dynamic = dynamicCodes(m_litFreq, m_distFreq);
        m_litCodes = m_dynamic.lit.data();
        m_distCodes = m_dynamic.dist.data();
        m_bitsAround = m_dynamic.headerBits + m_dynamic.endBits;
        prepare();
        encode(level);
    }
    // Bytes of the stream with the block's header and end.
    std::size_t size() const {
        return static_cast<std::size_t>(m_dstIdx) +
               (static_cast<unsigned>(m_pending) + m_bitsAround + 7) / 8;
    }

private:
    static constexpr int entries = 32768;

    const Bytes& m_source;
    Bytes m_lit;
    std::vector<Ntk16u> m_dist;
    Bytes m_dst;
    std::vector<Ntk32s> m_heads = std::vector<Ntk32s>(entries);
    std::vector<Ntk32s> m_previous = std::vector<Ntk32s>(entries);
    const NtkHuffCode* m_litCodes = fixedCodes.lit;
    const NtkHuffCode* m_distCodes = fixedCodes.dist;
    unsigned m_bitsAround = 3 + 7;
    DynamicCodes m_dynamic = {};
    Ntk32u m_litFreq[286] = {};
    Ntk32u m_distFreq[30] = {};
    const Ntk8u* m_src = nullptr;
    int m_srcLen = 0, m_srcIdx = 0, m_capacity = 0, m_dstIdx = 0, m_pending = 0;
    Ntk32u m_code = 0;
};

void compareWithZlib(int level, Run& run) {
    Bytes& data = run.data;
    Encoder encoder(data);
    Bytes dst(2 * data.size() + 100);
    z_stream z{};
    deflateInit2(&z, level, Z_DEFLATED, -MAX_WBITS, 8, Z_FIXED);
    const auto reset = [&] {
        deflateReset(&z);
        z.next_in = data.data();
        z.avail_in = static_cast<uInt>(data.size());
        z.next_out = dst.data();
        z.avail_out = static_cast<uInt>(dst.size());
    };
    run.sideBySide("LZ77 and Huff, level " + std::to_string(level), data.size(),
                   {{"", [&] { encoder.encode(level); }, [&] { encoder.prepare(); },
                     [&] { return encoder.size(); }},
                    {"zlib, fixed codes, level " + std::to_string(level),
                     [&] { deflate(&z, Z_FINISH); }, reset, [&] { return z.total_out; }}});
    deflateEnd(&z);
}

class Libdeflate {
public:
    static constexpr int levels = 12;

    explicit Libdeflate(const Bytes& source) : m_source(source), m_dst(2 * source.size() + 100) {
        for (int level = 1; level <= levels; ++level) {
            m_encoders.emplace_back(libdeflate_alloc_compressor(level), libdeflate_free_compressor);
            m_sizes.push_back(encode(level));
        }
    }
    std::size_t encode(int level) {
        return libdeflate_deflate_compress(m_encoders[static_cast<std::size_t>(level - 1)].get(),
                                           m_source.data(), m_source.size(), m_dst.data(),
                                           m_dst.size());
    }
    std::size_t sizeAt(int level) const { return m_sizes[static_cast<std::size_t>(level - 1)]; }

    // The level with the largest stream of at most this size, or with the smallest of more; 0:
    // there is none.
    int levelBelow(std::size_t size) const {
        return nearest([=](std::size_t other) { return other <= size ? size - other : none; });
    }
    int levelAbove(std::size_t size) const {
        return nearest([=](std::size_t other) { return other > size ? other - size : none; });
    }

private:
    using Compressor = std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)>;
    static constexpr std::size_t none = SIZE_MAX;

    template <class Distance> int nearest(Distance distance) const {
        const auto best =
            std::min_element(m_sizes.begin(), m_sizes.end(), [&](std::size_t a, std::size_t b) {
                return distance(a) < distance(b);
            });
        return distance(*best) == none ? 0 : static_cast<int>(best - m_sizes.begin()) + 1;
    }

    const Bytes& m_source;
    Bytes m_dst;
    std::vector<Compressor> m_encoders;
    std::vector<std::size_t> m_sizes;
};

void compareWithLibdeflate(int level, Libdeflate& libdeflate, Run& run) {
    Encoder encoder(run.data);
    encoder.useDynamicCodes(level);
    const auto compareWith = [&](const char* which, int other) {
        if (other == 0) {
            return;
        }
        run.sideBySide("LZ77 and Huff, own codes, level " + std::to_string(level), run.data.size(),
                       {{"", [&] { encoder.encode(level); }, [&] { encoder.prepare(); },
                         [&] { return encoder.size(); }},
                        {which + std::to_string(other),
                         [&, other] { libdeflate.encode(other); },
                         {},
                         [&, other] { return libdeflate.sizeAt(other); }}});
    };
    compareWith("libdeflate, smaller: level ", libdeflate.levelBelow(encoder.size()));
    compareWith("libdeflate, larger: level ", libdeflate.levelAbove(encoder.size()));
}

void compareDeflate(Run& run) {
    for (int level = 1; level <= 9; ++level) {
        compareWithZlib(level, run);
    }
    Libdeflate libdeflate(run.data);
    for (int level = 1; level <= 9; ++level) {
        compareWithLibdeflate(level, libdeflate, run);
    }
}

} // namespace

const Comparison deflateComparison = {
    "deflate",
    "deflate in its two steps with zlib (fixed codes) and libdeflate (codes for the data)",
    {"book1", "pic"},
    102400,
    60,
    compareDeflate};

// The library's deflate calls against zlib with its fixed codes: time and size at every level.

#include <algorithm>

#include <zlib.h>

#include "comparison.h"
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
        must(ntksDeflateHuff_8u(m_lit.data(), m_dist.data(), count, &m_code, &m_pending,
                                fixedCodes.lit, fixedCodes.dist, m_dst.data(), &m_dstIdx));
    }
    // Bytes of the stream with the block's header (3 bits) and end (7 bits).
    std::size_t size() const {
        return static_cast<std::size_t>(m_dstIdx) +
               static_cast<std::size_t>((m_pending + 3 + 7 + 7) / 8);
    }

private:
    static constexpr int entries = 32768;

    const Bytes& m_source;
    Bytes m_lit;
    std::vector<Ntk16u> m_dist;
    Bytes m_dst;
    std::vector<Ntk32s> m_heads = std::vector<Ntk32s>(entries);
    std::vector<Ntk32s> m_previous = std::vector<Ntk32s>(entries);
    Ntk32u m_litFreq[286] = {};
    Ntk32u m_distFreq[30] = {};
    const Ntk8u* m_src = nullptr;
    int m_srcLen = 0, m_srcIdx = 0, m_capacity = 0, m_dstIdx = 0, m_pending = 0;
    Ntk32u m_code = 0;
};

void compareAt(int level, Run& run) {
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

void compareDeflate(Run& run) {
    for (int level = 1; level <= 9; ++level) {
        compareAt(level, run);
    }
}

} // namespace

const Comparison deflateComparison = {
    "deflate",
    "deflate in its two steps with zlib and its fixed codes, at every level",
    {"book1", "pic"},
    102400,
    60,
    compareDeflate};

// The library's deflate calls against zlib with its fixed codes, on the first 100 KiB of the files
// given or on text made here: time and size at every level.

#include <fstream>
#include <iterator>
#include <random>

#include <zlib.h>

#include "contest.h"
#include "fixedcodes.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

constexpr std::size_t mostBytes = 102400;

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(file), {});
    bytes.resize(std::min(bytes.size(), mostBytes));
    return bytes;
}

Bytes madeText() {
    static const char* const words[] = {"time ", "flow ", "of ", "the ",   "current ", "and, ",
                                        "a ",    "bank ", "in ", "rain\n", "slowly ",  "under "};
    std::mt19937 generator(7);
    std::string text;
    while (text.size() < mostBytes) {
        text += words[generator() % std::size(words)];
        text += static_cast<char>('a' + generator() % 26);
    }
    return Bytes(text.begin(), text.begin() + mostBytes);
}

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
        ntksDeflateLZ77_8u(&m_src, &m_srcLen, &m_srcIdx, m_source.data(), entries, m_heads.data(),
                           m_previous.data(), entries, m_litFreq, m_distFreq, m_lit.data(),
                           m_dist.data(), &m_capacity, level, ntkDeflateFinish);
        const int count = static_cast<int>(m_source.size()) - m_capacity;
        ntksDeflateHuff_8u(m_lit.data(), m_dist.data(), count, &m_code, &m_pending, fixedCodes.lit,
                           fixedCodes.dist, m_dst.data(), &m_dstIdx);
    }
    // Bytes of the stream with the block's header (3 bits) and end (7 bits).
    int length() const { return m_dstIdx + (m_pending + 3 + 7 + 7) / 8; }

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

void compareAt(int level, const std::string& name, Bytes& data, int rounds) {
    Encoder encoder(data);
    Bytes dst(2 * data.size());
    z_stream z{};
    deflateInit2(&z, level, Z_DEFLATED, -MAX_WBITS, 8, Z_FIXED);
    const auto reset = [&] {
        deflateReset(&z);
        z.next_in = data.data();
        z.avail_in = static_cast<uInt>(data.size());
        z.next_out = dst.data();
        z.avail_out = static_cast<uInt>(dst.size());
    };
    std::vector<Contender> contenders = {
        {"", [&] { encoder.encode(level); }, [&] { encoder.prepare(); }},
        {"deflate, Z_FIXED, level " + std::to_string(level), [&] { deflate(&z, Z_FINISH); },
         reset}};
    compete(contenders, rounds);
    printRatio(("LZ77 + Huff " + name).c_str(), data.size(), data.size(), contenders);
    std::printf("%-22s %7s %9d %9lu  %-26s %6.3f\n", "  bytes", "", encoder.length(), z.total_out,
                "", encoder.length() / static_cast<double>(z.total_out));
    deflateEnd(&z);
}

void compareFile(const std::string& name, Bytes data) {
    for (int level = 1; level <= 9; ++level) {
        compareAt(level, name, data, 60);
    }
}

} // namespace

int main(int argc, char** argv) {
    printRatioTitle();
    if (argc == 1) {
        compareFile("text", madeText());
    }
    for (int i = 1; i < argc; ++i) {
        const Bytes data = readFile(argv[i]);
        if (data.empty()) {
            std::printf("%s: cannot be read or is empty\n", argv[i]);
            return 1;
        }
        const std::string path = argv[i];
        compareFile(path.substr(path.rfind('/') + 1), data);
    }
    return 0;
}

// The library's inflater against zlib's and libdeflate's, on the first 100 KiB of the files given
// or on text made here. zlib's inflater can be cut anywhere, as ours; libdeflate's takes whole
// streams only. In the rows with pieces our stream is cut, the others' not.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <libdeflate.h>
#include <zlib.h>

#include "ntkcore.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

constexpr std::size_t dataBytes = 102400;
constexpr int rounds = 301;

Bytes madeText(std::size_t size) {
    std::mt19937 generator(7);
    Bytes text;
    while (text.size() < size) {
        const unsigned word = generator() % 4000 * (generator() % 4000) / 4000;
        for (unsigned n = 1 + word % 9, letter = word; n > 0; --n, letter = letter * 7 + 3) {
            text.push_back(static_cast<Ntk8u>("etaoinshrdlucmfwypvbgkqjxz"[letter % 5 * (n % 6)]));
        }
        text.push_back(' ');
    }
    text.resize(size);
    return text;
}

Bytes readFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(dataBytes);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

Bytes deflated(const Bytes& data, int level, int strategy) {
    z_stream z{};
    deflateInit2(&z, level, Z_DEFLATED, -15, 8, strategy);
    Bytes stream(deflateBound(&z, static_cast<uLong>(data.size())));
    z.next_in = const_cast<Ntk8u*>(data.data());
    z.avail_in = static_cast<uInt>(data.size());
    z.next_out = stream.data();
    z.avail_out = static_cast<uInt>(stream.size());
    deflate(&z, Z_FINISH);
    stream.resize(z.total_out);
    deflateEnd(&z);
    return stream;
}

// Decodes `stream` with pieces of at most `piece` bytes of source and of destination.
class OwnInflater {
public:
    OwnInflater() {
        int size = 0;
        ntksInflateGetSize_8u(&size);
        m_work.resize(static_cast<std::size_t>(size));
        ntksInflateInit_8u(&m_state, m_work.data());
    }
    void decode(const Bytes& stream, Bytes& data, int piece) {
        const Ntk8u* src = stream.data();
        Ntk8u* dst = data.data();
        Ntk32u code = 0;
        int codeLen = 0;
        int mode = ntkInflateBlockHeader;
        m_state.progress = 0;
        while (mode != ntkInflateFinished) {
            int srcLen = std::min(piece, static_cast<int>(stream.data() + stream.size() - src));
            int dstLen = std::min(piece, static_cast<int>(data.data() + data.size() - dst));
            if (ntksInflate_8u(&src, &srcLen, &code, &codeLen, nullptr, &dst, &dstLen, 0, &mode,
                               &m_state) < 0) {
                std::printf("not decoded\n");
                return;
            }
        }
    }

private:
    NtksInflateState m_state;
    Bytes m_work;
};

void zlibDecode(z_stream& z, const Bytes& stream, Bytes& data) {
    inflateReset(&z);
    z.next_in = const_cast<Ntk8u*>(stream.data());
    z.avail_in = static_cast<uInt>(stream.size());
    z.next_out = data.data();
    z.avail_out = static_cast<uInt>(data.size());
    inflate(&z, Z_FINISH);
}

// Median clocks of each call, in interleaved rounds.
std::vector<double> medianClocks(const std::vector<std::function<void()>>& calls) {
    std::vector<std::vector<Ntk64u>> clocks(calls.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const Ntk64u start = ntkStartTsc();
            calls[i]();
            clocks[i].push_back(ntkStopTsc() - start);
        }
    }
    std::vector<double> medians;
    for (std::vector<Ntk64u>& c : clocks) {
        std::nth_element(c.begin(), c.begin() + rounds / 2, c.end());
        medians.push_back(static_cast<double>(c[rounds / 2]));
    }
    return medians;
}

void compare(const std::string& name, const std::string& way, const Bytes& data,
             const Bytes& stream, int piece) {
    OwnInflater own;
    z_stream z{};
    inflateInit2(&z, -15);
    libdeflate_decompressor* const d = libdeflate_alloc_decompressor();
    Bytes out(data.size());
    const std::vector<double> clocks =
        medianClocks({[&] { own.decode(stream, out, piece); }, [&] { zlibDecode(z, stream, out); },
                      [&] {
                          libdeflate_deflate_decompress(d, stream.data(), stream.size(), out.data(),
                                                        out.size(), nullptr);
                      }});
    const auto size = static_cast<double>(data.size());
    std::printf("%-8s %-16s %8zu %8.3f %8.3f %10.3f %8.3f %11.3f\n", name.c_str(), way.c_str(),
                stream.size(), clocks[0] / size, clocks[1] / size, clocks[2] / size,
                clocks[0] / clocks[1], clocks[0] / clocks[2]);
    libdeflate_free_decompressor(d);
    inflateEnd(&z);
}

void compareAll(const std::string& name, const Bytes& data) {
    const int whole = static_cast<int>(dataBytes);
    for (const int level : {1, 6, 9}) {
        compare(name, "level " + std::to_string(level), data,
                deflated(data, level, Z_DEFAULT_STRATEGY), whole);
    }
    for (const int level : {1, 9}) {
        compare(name, "fixed, level " + std::to_string(level), data, deflated(data, level, Z_FIXED),
                whole);
    }
    compare(name, "6, pieces 4096", data, deflated(data, 6, Z_DEFAULT_STRATEGY), 4096);
}

} // namespace

int main(int argc, char** argv) {
    std::printf("%-8s %-16s %8s %8s %8s %10s %8s %11s\n", "data", "stream", "bytes", "ntkdc",
                "zlib", "libdeflate", "to zlib", "libdeflate");
    if (argc < 2) {
        compareAll("text", madeText(dataBytes));
    }
    for (int i = 1; i < argc; ++i) {
        const Bytes data = readFile(argv[i]);
        if (data.empty()) {
            std::printf("%s: cannot be read or is empty\n", argv[i]);
            return 1;
        }
        const std::string path = argv[i];
        compareAll(path.substr(path.rfind('/') + 1), data);
    }
    return 0;
}

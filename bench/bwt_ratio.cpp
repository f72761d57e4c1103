// The library's Burrows-Wheeler transform against libbz2, on a block of the files given or of text
// made here: the forward transform against libbz2's sorting step alone, the inverse against the
// whole of libbz2's decompression, of which it is one of three steps.
//
// libbz2 does not offer its sort by itself, but calls it as an exported function of its shared
// object. So the function of that name in this program takes its place and times the real one.

#include <dlfcn.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>

#include <bzlib.h>

#include "contest.h"
#include "ntkdc.h"

namespace {

using Bytes = std::vector<Ntk8u>;

Ntk64u g_sortClocks = 0;

} // namespace

extern "C" __attribute__((visibility("default"))) void BZ2_blockSort(void* state) {
    using Sort = void(void*);
    static Sort* const sort = reinterpret_cast<Sort*>(dlsym(RTLD_NEXT, "BZ2_blockSort"));
    const Ntk64u start = ntkStartTsc();
    sort(state);
    g_sortClocks += ntkStopTsc() - start;
}

namespace {

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

Bytes readFile(const char* name, std::size_t size) {
    std::ifstream file(name, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(file), {});
    bytes.resize(std::min(size, bytes.size()));
    return bytes;
}

// What bzip2 sorts: four equal bytes are followed by the number of further ones, 0 to 251.
Bytes runLengthCoded(const Bytes& data) {
    Bytes coded;
    for (std::size_t i = 0; i < data.size();) {
        std::size_t run = 1;
        while (run < 255 && i + run < data.size() && data[i + run] == data[i]) {
            ++run;
        }
        coded.insert(coded.end(), std::min<std::size_t>(run, 4), data[i]);
        if (run >= 4) {
            coded.push_back(static_cast<Ntk8u>(run - 4));
        }
        i += run;
    }
    return coded;
}

Bytes compressed(Bytes data) {
    Bytes stream(data.size() + data.size() / 100 + 600);
    auto length = static_cast<unsigned>(stream.size());
    BZ2_bzBuffToBuffCompress(reinterpret_cast<char*>(stream.data()), &length,
                             reinterpret_cast<char*>(data.data()),
                             static_cast<unsigned>(data.size()), 9, 0, 0);
    stream.resize(length);
    return stream;
}

Bytes buffer(NtkStatus (*getSize)(int, int*), int length) {
    int size = 0;
    getSize(length, &size);
    return Bytes(static_cast<std::size_t>(size));
}

void compareForward(const Bytes& data, const Bytes& block, int rounds) {
    static const char* const names[] = {"BWTFwd, Lim", "BWTFwd, Unlim", "BWTFwd, Suffix",
                                        "BWTFwd, Auto"};
    const auto length = static_cast<int>(block.size());
    Bytes work = buffer(ntksBWTFwdGetSize_8u, length);
    Bytes dst(block.size());
    int idx = 0;
    std::vector<Contender> contenders;
    for (int hint = 0; hint < 4; ++hint) {
        contenders.push_back({names[hint], [&, hint] {
                                  ntksBWTFwd_SelectSort_8u(
                                      block.data(), dst.data(), length, &idx, work.data(),
                                      static_cast<NtkBWTSortAlgorithmHint>(hint));
                              }});
    }
    Ntk64u bestSort = std::numeric_limits<Ntk64u>::max();
    contenders.push_back({"BZ2_blockSort", [&] {
                              g_sortClocks = 0;
                              compressed(data);
                              bestSort = std::min(bestSort, g_sortClocks);
                          }});
    compete(contenders, rounds);
    contenders.back().bestClocks = bestSort;
    for (int hint = 0; hint < 4; ++hint) {
        const auto chosen = static_cast<std::size_t>(hint);
        printRatio(names[hint], block.size(), block.size(), {contenders[chosen], contenders[4]});
    }
}

void compareInverse(const Bytes& data, const Bytes& block, int rounds) {
    const auto length = static_cast<int>(block.size());
    Bytes work = buffer(ntksBWTFwdGetSize_8u, length);
    Bytes sorted(block.size());
    int idx = 0;
    ntksBWTFwd_8u(block.data(), sorted.data(), length, &idx, work.data());
    Bytes stream = compressed(data);
    Bytes dst(data.size());
    Bytes inverseWork = buffer(ntksBWTInvGetSize_8u, length);
    std::vector<Contender> contenders = {
        {"", [&] { ntksBWTInv_8u(sorted.data(), dst.data(), length, idx, inverseWork.data()); }},
        {"all of libbz2 decompression", [&] {
             auto dataLen = static_cast<unsigned>(dst.size());
             BZ2_bzBuffToBuffDecompress(reinterpret_cast<char*>(dst.data()), &dataLen,
                                        reinterpret_cast<char*>(stream.data()),
                                        static_cast<unsigned>(stream.size()), 0, 0);
         }}};
    compete(contenders, rounds);
    printRatio("BWTInv", block.size(), block.size(), contenders);
}

} // namespace

int main(int argc, char** argv) {
    constexpr std::size_t blockBytes = 102400;
    constexpr int rounds = 60;
    printRatioTitle();
    for (int i = 1; i < std::max(argc, 2); ++i) {
        const Bytes data = argc > 1 ? readFile(argv[i], blockBytes) : madeText(blockBytes);
        if (data.empty()) {
            std::printf("%s: cannot be read or is empty\n", argv[i]);
            return 1;
        }
        std::printf("%s\n", argc > 1 ? argv[i] : "made text");
        const Bytes block = runLengthCoded(data);
        compareForward(data, block, rounds);
        compareInverse(data, block, rounds);
    }
    return 0;
}

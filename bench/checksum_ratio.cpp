// The library's checksums against the fastest packaged implementation of each, on 64 KiB.

#include <random>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>
#include <libdeflate.h>
#include <zlib.h>

#include "contest.h"
#include "ntkdc.h"

namespace {

constexpr int bytesPerCall = 65536;
constexpr int rounds = 5000;

std::vector<Ntk8u> randomData() {
    std::mt19937 generator(7);
    std::vector<Ntk8u> data(bytesPerCall);
    std::generate(data.begin(), data.end(), [&] { return static_cast<Ntk8u>(generator()); });
    return data;
}

} // namespace

int main() {
    std::vector<Ntk8u> data = randomData();
    Ntk8u* const p = data.data();
    constexpr int n = bytesPerCall;
    // Every call goes on from its own last value, as in use; no result can be optimised away.
    Ntk32u own = 1;
    Ntk32u other[3] = {1, 1, 1};
    const auto zlibValue = [](uLong value) { return static_cast<Ntk32u>(value); };

    struct Row {
        const char* name;
        std::vector<Contender> contenders;
    };
    Row rows[] = {
        {"ntksAdler32_8u",
         {{"", [&] { ntksAdler32_8u(p, n, &own); }},
          {"libdeflate", [&] { other[0] = libdeflate_adler32(other[0], p, n); }},
          {"libisal", [&] { other[1] = isal_adler32(other[1], p, n); }},
          {"zlib", [&] { other[2] = zlibValue(adler32(other[2], p, n)); }}}},
        {"ntksCRC32_8u",
         {{"", [&] { ntksCRC32_8u(p, n, &own); }},
          {"libdeflate", [&] { other[0] = libdeflate_crc32(other[0], p, n); }},
          {"libisal", [&] { other[1] = crc32_gzip_refl(other[1], p, n); }},
          {"zlib", [&] { other[2] = zlibValue(crc32(other[2], p, n)); }}}},
        {"ntksCRC32C_8u",
         {{"", [&] { ntksCRC32C_8u(p, n, &own); }},
          {"libisal", [&] { other[0] = crc32_iscsi(p, n, other[0]); }}}},
        {"ntksCRC32_BZ2_8u",
         {{"", [&] { ntksCRC32_BZ2_8u(p, n, &own); }},
          {"libisal", [&] { other[0] = crc32_ieee(other[0], p, n); }}}},
    };
    printRatioTitle();
    for (Row& row : rows) {
        compete(row.contenders, rounds);
        printRatio(row.name, bytesPerCall, bytesPerCall, row.contenders);
    }
    return 0;
}

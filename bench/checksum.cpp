// The library's checksums against the packaged implementations, on 64 KiB of random bytes.

#include <algorithm>
#include <random>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>
#include <libdeflate.h>
#include <zlib.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

constexpr int bytesPerCall = 65536;

void compareChecksums(Run& run) {
    Bytes data(bytesPerCall);
    std::mt19937 generator(7);
    std::generate(data.begin(), data.end(), [&] { return static_cast<Ntk8u>(generator()); });
    Ntk8u* const p = data.data();
    constexpr int n = bytesPerCall;
    // Every call goes on from its own last value, as in use; no result can be optimised away.
    Ntk32u own = 1, deflates = 1, isals = 1;
    uLong zlibs = 1;

    run.sideBySide("ntksAdler32_8u", n,
                   {{"", [&] { must(ntksAdler32_8u(p, n, &own)); }},
                    {"libdeflate", [&] { deflates = libdeflate_adler32(deflates, p, n); }},
                    {"libisal", [&] { isals = isal_adler32(isals, p, n); }},
                    {"zlib", [&] { zlibs = adler32(zlibs, p, n); }}});
    run.sideBySide("ntksCRC32_8u", n,
                   {{"", [&] { must(ntksCRC32_8u(p, n, &own)); }},
                    {"libdeflate", [&] { deflates = libdeflate_crc32(deflates, p, n); }},
                    {"libisal", [&] { isals = crc32_gzip_refl(isals, p, n); }},
                    {"zlib", [&] { zlibs = crc32(zlibs, p, n); }}});
    run.sideBySide("ntksCRC32C_8u", n,
                   {{"", [&] { must(ntksCRC32C_8u(p, n, &own)); }},
                    {"libisal", [&] { isals = crc32_iscsi(p, n, isals); }}});
    run.sideBySide("ntksCRC32_BZ2_8u", n,
                   {{"", [&] { must(ntksCRC32_BZ2_8u(p, n, &own)); }},
                    {"libisal", [&] { isals = crc32_ieee(isals, p, n); }}});
}

} // namespace

const Comparison checksumComparison = {
    "checksum",      "Adler-32 and the CRCs with libdeflate, libisal and zlib", {}, 0, 5000,
    compareChecksums};

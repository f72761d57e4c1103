#include "packed.h"

#include <bzlib.h>
#include <lz4.h>
#include <zlib.h>

namespace corpus {

std::array<double, 3> packedSizes(std::string data) {
    const auto size = static_cast<unsigned>(data.size());
    std::string packed(size + size / 16 + 1024, '\0'); // enough for each
    const int lz4 = LZ4_compress_default(data.data(), packed.data(), static_cast<int>(size),
                                         static_cast<int>(packed.size()));
    uLongf zlib = packed.size();
    compress2(reinterpret_cast<Bytef*>(packed.data()), &zlib,
              reinterpret_cast<const Bytef*>(data.data()), size, 6);
    constexpr uLongf kLongerGzipEnds = 12; // its header and trailer beside zlib's
    auto bzip2 = static_cast<unsigned>(packed.size());
    BZ2_bzBuffToBuffCompress(packed.data(), &bzip2, data.data(), size, 9, 0, 0);
    return {static_cast<double>(lz4), static_cast<double>(zlib + kLongerGzipEnds),
            static_cast<double>(bzip2)};
}

} // namespace corpus

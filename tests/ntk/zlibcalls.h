// Deflate streams by zlib, the reference of the deflate encoder and of the inflater.
#pragma once

#include <zlib.h>

#include "samples.h"

// Parameters of zlib's encoder.
struct ZlibOptions {
    int level = 6;
    int strategy = Z_DEFAULT_STRATEGY;
    int memLevel = 8; // small ones make short blocks
};

inline Bytes deflated(const Bytes& data, const ZlibOptions& options, const Bytes& dictionary = {}) {
    z_stream z{};
    deflateInit2(&z, options.level, Z_DEFLATED, -15, options.memLevel, options.strategy);
    if (!dictionary.empty()) {
        deflateSetDictionary(&z, dictionary.data(), static_cast<uInt>(dictionary.size()));
    }
    Bytes stream(deflateBound(&z, static_cast<uLong>(data.size())) + 64);
    z.next_in = const_cast<Ntk8u*>(data.data());
    z.avail_in = static_cast<uInt>(data.size());
    z.next_out = stream.data();
    z.avail_out = static_cast<uInt>(stream.size());
    deflate(&z, Z_FINISH);
    stream.resize(z.total_out);
    deflateEnd(&z);
    return stream;
}

enum class Verdict { valid, malformed, destinationFull, unfinished };

// The result of decoding a stream.
struct Inflated {
    Verdict verdict = Verdict::unfinished;
    std::size_t taken = 0; // bytes of the stream
    Bytes data;

    bool operator==(const Inflated&) const = default;
};

inline Inflated zlibInflated(const Bytes& stream, std::size_t capacity) {
    z_stream z{};
    inflateInit2(&z, -15);
    Bytes data(capacity + 1); // zlib wants a pointer
    z.next_in = const_cast<Ntk8u*>(stream.data());
    z.avail_in = static_cast<uInt>(stream.size());
    z.next_out = data.data();
    z.avail_out = static_cast<uInt>(capacity);
    const int status = inflate(&z, Z_SYNC_FLUSH);
    data.resize(z.total_out);
    const Inflated result{status == Z_STREAM_END   ? Verdict::valid
                          : status == Z_DATA_ERROR ? Verdict::malformed
                          : z.avail_out == 0       ? Verdict::destinationFull
                                                   : Verdict::unfinished,
                          z.total_in, data};
    inflateEnd(&z);
    return result;
}

// The LZ4 encoders with any tables, dictionary and room, with liblz4 as the decoder.
#include "guarded.h"
#include "cpufeatures.h"
#include "dc/lz4/tables.h"
#include "lz4calls.h"

namespace {

// A table at the position of the call, with indices around it: what the check of a table is for.
void makeFitting(Lz4Tables& tables, int position, const Bytes& noise, fuzz::Input& in) {
    auto& table = ntk::stateIn<ntk::lz4::HashTable>(tables.hash());
    table.position = position;
    table.index = in.number<Ntk32u>();
    table.share = in.word();
    const int shift = static_cast<int>(in.below(25));
    for (std::size_t i = 0; i < table.positions.size(); ++i) {
        const unsigned distance = noise.empty() ? 0 : noise[i % noise.size()];
        table.positions[i] = table.index - (distance << shift);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    static Lz4Tables tables;
    fuzz::Input in(data, size);
    fuzz::enableFeatures(in);
    const Lz4Encoder& encoder = lz4Encoders[in.below(std::size(lz4Encoders))];
    const unsigned choices = in.byte();
    const unsigned contents = choices % 4; // of the tables: none, noise, the last call's, fitting
    const bool isInPlace = choices / 4 % 2 == 1; // the dictionary, before the source
    const Bytes noise = in.take(8);
    const int position = static_cast<int>(in.word());
    const std::size_t room = in.word();
    const unsigned repeats = 1 + in.below(40);
    const std::size_t dictLen = encoder.takesDictionary ? in.word() : 0;
    Bytes all = in.take(dictLen);
    const GuardedBlock elsewhere(all);
    if (contents == 0) {
        tables.clear();
    } else if (contents == 1 && !noise.empty()) {
        tables.fill(noise);
    } else if (contents == 3) {
        makeFitting(tables, position, noise, in);
    }
    Bytes text;
    for (const Bytes part = in.rest(); text.size() < repeats * part.size();) {
        text.insert(text.end(), part.begin(), part.end());
    }

    const std::size_t enough = text.size() + text.size() / 255 + 16;
    const std::size_t capacity = room % (enough + 1);

    const GuardedBlock src(text);
    all.insert(all.end(), text.begin(), text.end());
    const GuardedBlock joint(all);
    const GuardedBlock dst(capacity);
    Lz4Call call{src.data(), position,         src.size(),      dst.data(),
                 dst.size(), elsewhere.data(), elsewhere.size()};
    if (isInPlace) {
        call.dict = joint.data();
        call.src = joint.data() + call.dictLen;
    }
    const NtkStatus status = encoder.encode(call, tables);
    if (status < 0) {
        FUZZ_CHECK(status == ntkStsDstTooSmall);
        FUZZ_CHECK(call.srcLen == src.size() && call.dstLen == dst.size());
        FUZZ_CHECK(capacity < enough);
        return 0;
    }
    FUZZ_CHECK(0 <= call.dstLen && call.dstLen <= dst.size());
    FUZZ_CHECK(status == ntkStsDstFull ? encoder.stopsWhenFull && call.srcLen < src.size()
                                       : call.srcLen == src.size());
    const Bytes decoded = decodedByLiblz4(dst.data(), call.dstLen, call.srcLen,
                                          encoder.takesDictionary ? call.dict : nullptr,
                                          encoder.takesDictionary ? call.dictLen : 0);
    FUZZ_CHECK(decoded == Bytes(text.begin(), text.begin() + call.srcLen));
    return 0;
}

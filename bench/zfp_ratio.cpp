// The library's ZFP calls, block by block, against libzfp's on the whole field, which is a smooth
// one of 32 x 32 x 32 values.

#include <cmath>
#include <cstdio>
#include <memory>

#include <zfp.h>

#include "contest.h"
#include "ntkdc.h"

namespace {

constexpr int side = 32;
constexpr int values = side * side * side;
constexpr std::size_t fieldBytes = values * sizeof(float);
constexpr int rounds = 400;

struct Mode {
    const char* name;
    bool isRate;
    double value;
};

struct Field {
    std::vector<float> values = std::vector<float>(::values);
    std::vector<Ntk8u> coded = std::vector<Ntk8u>(2 * fieldBytes);
};

std::vector<float> smoothField() {
    std::vector<float> field;
    for (int i = 0; i < values; i++) {
        const int x = i % side, y = i / side % side, z = i / side / side;
        field.push_back(
            static_cast<float>(std::sin(0.1 * x + 0.3) * std::cos(0.13 * y) + 0.02 * z));
    }
    return field;
}

void setMode(const Mode& mode, Ntk8u* state) {
    if (mode.isRate) {
        ntksZfpSetRate_32f(mode.value, state);
    } else {
        ntksZfpSetAccuracy_32f(mode.value, state);
    }
}

void forEachBlock(auto take) {
    for (int z = 0; z < side; z += 4) {
        for (int y = 0; y < side; y += 4) {
            for (int x = 0; x < side; x += 4) {
                take((z * side + y) * side + x);
            }
        }
    }
}

int encode(Field& field, const Mode& mode, std::vector<Ntk8u>& state) {
    ntksEncodeZfpInit_32f(field.coded.data(), static_cast<int>(field.coded.size()), state.data());
    setMode(mode, state.data());
    forEachBlock([&](int at) {
        ntksEncodeZfp444_32f(&field.values[static_cast<std::size_t>(at)], side, side * side,
                             state.data());
    });
    ntksEncodeZfpFlush_32f(state.data());
    int length = 0;
    ntksZfpGetLength_32f(&length, state.data());
    return length;
}

void decode(Field& field, int length, const Mode& mode, std::vector<Ntk8u>& state) {
    ntksDecodeZfpInit_32f(field.coded.data(), length, state.data());
    setMode(mode, state.data());
    forEachBlock([&](int at) {
        ntksDecodeZfp444_32f(&field.values[static_cast<std::size_t>(at)], side, side * side,
                             state.data());
    });
}

void compare(const Mode& mode) {
    int size = 0;
    ntksZfpGetSize_32f(&size);
    std::vector<Ntk8u> state(static_cast<std::size_t>(size));
    Field own, other;
    own.values = other.values = smoothField();
    zfp_field* const array = zfp_field_3d(other.values.data(), zfp_type_float, side, side, side);
    bitstream* const bits = stream_open(other.coded.data(), other.coded.size());
    zfp_stream* const zfp = zfp_stream_open(bits);
    if (mode.isRate) {
        zfp_stream_set_rate(zfp, mode.value, zfp_type_float, 3, zfp_false);
    } else {
        zfp_stream_set_accuracy(zfp, mode.value);
    }
    const auto rewind = [&] { zfp_stream_rewind(zfp); };

    std::printf("%s\n", mode.name);
    int length = 0;
    std::vector<Contender> encoders = {{"", [&] { length = encode(own, mode, state); }},
                                       {"zfp_compress", [&] { zfp_compress(zfp, array); }, rewind}};
    compete(encoders, rounds);
    printRatio("ntksEncodeZfp444_32f", fieldBytes, fieldBytes, encoders);
    std::vector<Contender> decoders = {
        {"", [&] { decode(own, length, mode, state); }},
        {"zfp_decompress", [&] { zfp_decompress(zfp, array); }, rewind}};
    compete(decoders, rounds);
    printRatio("ntksDecodeZfp444_32f", fieldBytes, static_cast<std::size_t>(length), decoders);
    zfp_stream_close(zfp);
    stream_close(bits);
    zfp_field_free(array);
}

} // namespace

int main() {
    printRatioTitle();
    for (const Mode& mode : {Mode{"rate 4", true, 4}, Mode{"rate 8", true, 8},
                             Mode{"rate 16", true, 16}, Mode{"tolerance 0.001", false, 0.001}}) {
        compare(mode);
    }
    return 0;
}

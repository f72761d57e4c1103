// ZFP blocks against libzfp's coding of whole arrays, at the ends of buffers, and on arbitrary
// bytes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include <zfp.h>

#include "callerblocks.h"
#include "guarded.h"
#include "ntkdc.h"

namespace {

using Values = std::vector<Ntk32f>;
constexpr int nx = 12, ny = 8, nz = 16;
constexpr int blocks = nx * ny * nz / 64;

struct Mode {
    bool isRate;
    double value; // bits per value or tolerance
};
const Mode modes[] = {{true, 0.01},
                      {true, 1},
                      {true, 3.7},
                      {true, 8},
                      {true, 16},
                      {true, 32},
                      {false, 0},
                      {false, 1e-6},
                      {false, 0.003},
                      {false, 100},
                      {false, std::numeric_limits<double>::max()}};

std::string text(const Mode& mode) {
    return (mode.isRate ? "rate " : "tolerance ") + std::to_string(mode.value);
}

void set(const Mode& mode, Ntk8u* state) {
    ASSERT_EQ(mode.isRate ? ntksZfpSetRate_32f(mode.value, state)
                          : ntksZfpSetAccuracy_32f(mode.value, state),
              ntkStsNoErr);
}

Bytes newState() {
    return blockFor(ntksZfpGetSize_32f);
}

int lengthOf(const Bytes& state) {
    int length = -1;
    EXPECT_EQ(ntksZfpGetLength_32f(&length, state.data()), ntkStsNoErr);
    return length;
}

Values fieldOf(const std::function<double(int x, int y, int z)>& value) {
    Values field;
    for (int i = 0; i < nx * ny * nz; i++) {
        field.push_back(static_cast<Ntk32f>(value(i % nx, i / nx % ny, i / nx / ny)));
    }
    return field;
}

// Fields with short blocks, long ones and both.
std::vector<Values> fields() {
    std::mt19937 generator(11);
    const auto random = [&](double exponents) {
        return std::ldexp(static_cast<double>(generator()) - 2e9,
                          static_cast<int>(exponents * generator() / 4.3e9 - exponents / 2 - 31));
    };
    return {
        fieldOf([](int x, int y, int z) { return std::sin(x * 0.1 + y * y * 0.02) - z * 0.05; }),
        fieldOf([](int, int, int) { return 0; }),
        fieldOf([&](int, int, int) { return random(0); }),
        fieldOf([&](int, int, int) { return random(250); }),
        fieldOf([&](int x, int y, int) { return x < 4 || y > 3 ? 0 : random(8); }),
        fieldOf([](int x, int, int) { return x % 2 ? 3.4e38 : -3.4e38; }),
        fieldOf([](int x, int y, int z) { return x == 5 && y == 2 && z == 9 ? 1e-42 : -1e-45; })};
}

std::size_t originOf(int block) {
    const int x = block % (nx / 4), y = block / (nx / 4) % (ny / 4),
              z = block / (nx / 4) / (ny / 4);
    return static_cast<std::size_t>(4 * (x + nx * (y + ny * z)));
}

// Calls code(offset of the block's first value) for one block after another, until one fails with
// the status of a buffer's end; returns the number of those before it.
int codeBlocks(NtkStatus atTheEnd, const std::function<NtkStatus(std::size_t)>& code) {
    int count = 0;
    NtkStatus status = ntkStsNoErr;
    while (count < blocks && status == ntkStsNoErr) {
        status = code(originOf(count));
        count += status == ntkStsNoErr;
    }
    EXPECT_EQ(status, count < blocks ? atTheEnd : ntkStsNoErr);
    return count;
}

// Returns the number of blocks that fitted; ends the stream.
int encode(const Values& field, const Mode& mode, const GuardedBlock& out, Bytes& state) {
    EXPECT_EQ(ntksEncodeZfpInit_32f(out.data(), out.size(), state.data()), ntkStsNoErr);
    set(mode, state.data());
    const int count = codeBlocks(ntkStsDstTooSmall, [&](std::size_t origin) {
        return ntksEncodeZfp444_32f(&field[origin], nx, nx * ny, state.data());
    });
    EXPECT_EQ(ntksEncodeZfpFlush_32f(state.data()), ntkStsNoErr);
    return count;
}

// Decodes blocks into the field; returns their number.
int decode(Values& field, const Mode& mode, const GuardedBlock& in, Bytes& state) {
    EXPECT_EQ(ntksDecodeZfpInit_32f(in.data(), in.size(), state.data()), ntkStsNoErr);
    set(mode, state.data());
    const int count = codeBlocks(ntkStsBadSrcData, [&](std::size_t origin) {
        return ntksDecodeZfp444_32f(&field[origin], nx, nx * ny, state.data());
    });
    EXPECT_LE(lengthOf(state), in.size());
    return count;
}

// Encodes or decodes the whole array with libzfp; returns the length of the stream.
std::size_t codeWithLibzfp(bool isEncoder, Values& field, const Mode& mode, Bytes& bytes) {
    const std::unique_ptr<zfp_field, decltype(&zfp_field_free)> array(
        zfp_field_3d(field.data(), zfp_type_float, nx, ny, nz), zfp_field_free);
    const std::unique_ptr<bitstream, decltype(&stream_close)> bits(
        stream_open(bytes.data(), bytes.size()), stream_close);
    const std::unique_ptr<zfp_stream, decltype(&zfp_stream_close)> zfp(zfp_stream_open(bits.get()),
                                                                       zfp_stream_close);
    if (mode.isRate) {
        zfp_stream_set_rate(zfp.get(), mode.value, zfp_type_float, 3, zfp_false);
    } else {
        zfp_stream_set_accuracy(zfp.get(), mode.value);
    }
    return isEncoder ? zfp_compress(zfp.get(), array.get())
                     : zfp_decompress(zfp.get(), array.get());
}

Bytes referenceStream(Values field, const Mode& mode) {
    Bytes bytes(1 << 16);
    bytes.resize(codeWithLibzfp(true, field, mode, bytes));
    return bytes;
}

Values referenceValues(Bytes bytes, const Mode& mode) {
    Values field(nx * ny * nz);
    bytes.resize(bytes.size() + (1 << 16)); // it reads beyond the end of a truncated stream
    codeWithLibzfp(false, field, mode, bytes);
    return field;
}

// Zeros of both signs differ.
std::uint32_t bitsOf(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

bool isSame(const Values& a, const Values& b, int block) {
    bool same = true;
    for (std::size_t i = 0; i < 64; i++) {
        const std::size_t at = originOf(block) + i % 4 + i / 4 % 4 * nx + i / 16 * nx * ny;
        same = same && bitsOf(a[at]) == bitsOf(b[at]);
    }
    return same;
}

TEST(Zfp, StreamsAndValuesAreThoseOfLibzfp) {
    Bytes state = newState();
    for (const Values& field : fields()) {
        for (const Mode& mode : modes) {
            const Bytes expected = referenceStream(field, mode);
            const GuardedBlock out(expected.size()); // and not one byte more
            EXPECT_EQ(encode(field, mode, out, state), blocks) << text(mode);
            EXPECT_EQ(lengthOf(state), out.size()) << text(mode);
            EXPECT_EQ(Bytes(out.data(), out.data() + out.size()), expected) << text(mode);

            Values decoded(field.size(), -1);
            EXPECT_EQ(decode(decoded, mode, GuardedBlock(expected), state), blocks) << text(mode);
            EXPECT_EQ(lengthOf(state), out.size()) << text(mode);
            const Values expectedValues = referenceValues(expected, mode);
            EXPECT_TRUE(std::ranges::equal(decoded, expectedValues, {}, bitsOf, bitsOf))
                << text(mode);
        }
    }
}

// A truncated stream, and a buffer that is too small, hold the blocks that end before the cut.
TEST(Zfp, BuffersCutAtEveryByte) {
    Bytes state = newState();
    const Values field = fields()[4];
    for (const Mode& mode : {modes[2], modes[8], modes[6]}) {
        const Bytes all = referenceStream(field, mode);
        const Values values = referenceValues(all, mode);
        for (std::size_t size = 0; size < all.size(); size++) {
            const GuardedBlock out(size);
            const int fitted = encode(field, mode, out, state);
            const int length = lengthOf(state);
            ASSERT_LE(length, out.size());
            ASSERT_TRUE(length == 0 || std::equal(out.data(), out.data() + length - 1, all.data()));

            Values decoded(field.size(), -1);
            const auto cut = all.begin() + static_cast<std::ptrdiff_t>(size);
            const int found = decode(decoded, mode, GuardedBlock(Bytes(all.begin(), cut)), state);
            ASSERT_EQ(found, fitted) << size << text(mode); // what fitted is decoded again
            for (int i = 0; i < found; i++) {
                ASSERT_TRUE(isSame(decoded, values, i)) << size << text(mode);
            }
            ASSERT_EQ(decoded[originOf(found)], -1) << "written by a call that failed";
        }
    }
}

TEST(Zfp, AnyBytesAreBlocksOrRejected) {
    std::mt19937 generator(5);
    Bytes state = newState();
    int found = 0;
    for (int round = 0; round < 3000; round++) {
        const Mode& mode = modes[round % std::size(modes)];
        Bytes bytes(generator() % 600);
        const unsigned ones = generator() % 3; // ones are rare, half of the bits, frequent
        for (Ntk8u& byte : bytes) {
            const unsigned a = generator(), b = generator();
            byte = static_cast<Ntk8u>(ones == 0 ? a & b : ones == 1 ? a : a | b);
        }
        Values decoded(nx * ny * nz, -1);
        const int count = decode(decoded, mode, GuardedBlock(bytes), state);
        const Values expected = referenceValues(bytes, mode);
        for (int i = 0; i < count; i++) {
            ASSERT_TRUE(isSame(decoded, expected, i)) << round << text(mode);
        }
        found += count;
    }
    EXPECT_GT(found, 3000);
}

// All ones are the longest block, 2120 bits. Blocks of a single bit 0 before it move it to every
// bit of a byte.
TEST(Zfp, TheLongestBlockAtTheEnd) {
    const GuardedBlock state(newState());
    for (int zeros = 0; zeros < 8; zeros++) {
        const int size = (zeros + 2120 + 7) / 8;
        for (const int cut : {0, 1, 100}) {
            Bytes bytes(static_cast<std::size_t>(size - cut), Ntk8u(0xff));
            bytes[0] = static_cast<Ntk8u>(0xff << zeros);
            const GuardedBlock in(bytes);
            Values block(64, -1);
            ASSERT_EQ(ntksDecodeZfpInit_32f(in.data(), in.size(), state.data()), ntkStsNoErr);
            for (int i = 0; i < zeros; i++) {
                ASSERT_EQ(ntksDecodeZfp444_32f(block.data(), 4, 16, state.data()), ntkStsNoErr);
                ASSERT_EQ(block, Values(64, 0));
            }
            EXPECT_EQ(ntksDecodeZfp444_32f(block.data(), 4, 16, state.data()),
                      cut ? ntkStsBadSrcData : ntkStsNoErr);
            int length = 0;
            ASSERT_EQ(ntksZfpGetLength_32f(&length, state.data()), ntkStsNoErr);
            EXPECT_EQ(length, cut ? zeros > 0 : size) << zeros;
        }
    }
}

TEST(Zfp, StepsAndAlignmentAreFree) {
    Bytes state = newState();
    const Values field = fields()[2];
    Bytes shifted(sizeof(Ntk32f) * 64 + 1), stream(1000), back(shifted.size());
    for (const auto& [stepY, stepZ, first] : {std::tuple{4, 16, 0}, {-4, 16, 12}, {16, 4, 0}}) {
        std::memcpy(shifted.data() + 1, field.data(), sizeof(Ntk32f) * 64);
        const auto at = [first = first](Bytes& bytes) {
            return reinterpret_cast<Ntk32f*>(bytes.data() + 1 + sizeof(Ntk32f) * first);
        };
        ASSERT_EQ(ntksEncodeZfpInit_32f(stream.data(), 1000, state.data()), ntkStsNoErr);
        ASSERT_EQ(ntksEncodeZfp444_32f(at(shifted), stepY, stepZ, state.data()), ntkStsNoErr);
        ASSERT_EQ(ntksEncodeZfpFlush_32f(state.data()), ntkStsNoErr);
        ASSERT_EQ(ntksDecodeZfpInit_32f(stream.data(), lengthOf(state), state.data()), ntkStsNoErr);
        std::fill(back.begin(), back.end(), Ntk8u(0));
        ASSERT_EQ(ntksDecodeZfp444_32f(at(back), stepY, stepZ, state.data()), ntkStsNoErr);
        for (std::size_t i = 0; i < 64; i++) {
            Ntk32f value;
            std::memcpy(&value, back.data() + 1 + i * sizeof value, sizeof value);
            EXPECT_NEAR(value, field[i], 1e-6) << i << " " << stepY;
        }
    }
}

TEST(Zfp, ArgumentsAreChecked) {
    Bytes encoder = newState(), decoder = newState(), unmade = newState();
    Bytes stream(100);
    Ntk32f block[64] = {};
    int length = 77;
    ASSERT_EQ(ntksEncodeZfpInit_32f(stream.data(), 100, encoder.data()), ntkStsNoErr);
    ASSERT_EQ(ntksDecodeZfpInit_32f(stream.data(), 100, decoder.data()), ntkStsNoErr);
    const double nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    const struct {
        NtkStatus status, expected;
    } calls[] = {
        {ntksZfpSetRate_32f(8, unmade.data()), ntkStsBadValue},
        {ntksZfpSetRate_32f(0, encoder.data()), ntkStsBadValue},
        {ntksZfpSetRate_32f(32.01, encoder.data()), ntkStsBadValue},
        {ntksZfpSetRate_32f(nan, encoder.data()), ntkStsBadValue},
        {ntksZfpSetAccuracy_32f(-1e-9, encoder.data()), ntkStsBadValue},
        {ntksZfpSetAccuracy_32f(infinity, encoder.data()), ntkStsBadValue},
        {ntksZfpSetAccuracy_32f(nan, encoder.data()), ntkStsBadValue},
        {ntksEncodeZfp444_32f(block, 4, 16, decoder.data()), ntkStsBadValue},
        {ntksEncodeZfp444_32f(block, 4, 16, unmade.data()), ntkStsBadValue},
        {ntksDecodeZfp444_32f(block, 4, 16, encoder.data()), ntkStsBadValue},
        {ntksEncodeZfpFlush_32f(decoder.data()), ntkStsBadValue},
        {ntksZfpGetLength_32f(&length, unmade.data()), ntkStsBadValue},
        {ntksEncodeZfp444_32f(block, 4, 16, encoder.data()), ntkStsNoErr}, // one bit: all zero
        {ntksZfpGetLength_32f(&length, encoder.data()), ntkStsNoErr},
        {ntksEncodeZfpFlush_32f(encoder.data()), ntkStsNoErr},
        {ntksEncodeZfpFlush_32f(encoder.data()), ntkStsNoErr},
        {ntksEncodeZfp444_32f(block, 4, 16, encoder.data()), ntkStsBadValue},
    };
    for (const auto& call : calls) {
        EXPECT_EQ(call.status, call.expected) << "call " << &call - calls;
    }
    EXPECT_EQ(length, 1);
    EXPECT_EQ(lengthOf(encoder), 1);
}

} // namespace

// The library's ZFP calls, block by block, against libzfp's on the whole field, which is a smooth
// one of 32 x 32 x 32 values.

#include <cmath>
#include <memory>

#include <zfp.h>

#include "comparison.h"
#include "ntkdc.h"

namespace {

constexpr int side = 32;
constexpr std::size_t fieldBytes = sizeof(float) * side * side * side;

std::size_t fieldIndex(int x, int y, int z) {
    const int index = (z * side + y) * side + x;
    return static_cast<std::size_t>(index);
}

struct Mode {
    std::string name;
    bool isRate;
    double value;
};
const Mode modes[] = {{"rate 4", true, 4},
                      {"rate 8", true, 8},
                      {"rate 16", true, 16},
                      {"tolerance 0.001", false, 0.001}};

struct Field {
    std::vector<float> values = {};
    Bytes coded = Bytes(2 * fieldBytes);

    Field() {
        for (int i = 0; i < side * side * side; i++) {
            const int x = i % side, y = i / side % side, z = i / side / side;
            values.push_back(
                static_cast<float>(std::sin(0.1 * x + 0.3) * std::cos(0.13 * y) + 0.02 * z));
        }
    }
};

class Own {
public:
    explicit Own(const Mode& mode) : m_mode(mode) {}

    void encode() {
        forAllBlocks(ntksEncodeZfpInit_32f, ntksEncodeZfp444_32f, lengthOf(m_field.coded));
        must(ntksEncodeZfpFlush_32f(m_state.data()));
        must(ntksZfpGetLength_32f(&m_length, m_state.data()));
    }
    void decode() { forAllBlocks(ntksDecodeZfpInit_32f, ntksDecodeZfp444_32f, m_length); }
    int length() const { return m_length; }

private:
    template <class Init, class Call> void forAllBlocks(Init init, Call call, int codedBytes) {
        must(init(m_field.coded.data(), codedBytes, m_state.data()));
        must(m_mode.isRate ? ntksZfpSetRate_32f(m_mode.value, m_state.data())
                           : ntksZfpSetAccuracy_32f(m_mode.value, m_state.data()));
        for (int z = 0; z < side; z += 4) {
            for (int y = 0; y < side; y += 4) {
                for (int x = 0; x < side; x += 4) {
                    must(call(&m_field.values[fieldIndex(x, y, z)], side, side * side,
                              m_state.data()));
                }
            }
        }
    }

    const Mode& m_mode;
    Field m_field;
    Bytes m_state = sized(ntksZfpGetSize_32f);
    int m_length = 0;
};

template <class T> using Handle = std::unique_ptr<T, void (*)(T*)>;

void compareMode(const Run& run, const Mode& mode) {
    Own own(mode);
    Field other;
    const Handle<zfp_field> array(
        zfp_field_3d(other.values.data(), zfp_type_float, side, side, side), zfp_field_free);
    const Handle<bitstream> bits(stream_open(other.coded.data(), other.coded.size()), stream_close);
    const Handle<zfp_stream> zfp(zfp_stream_open(bits.get()), zfp_stream_close);
    if (mode.isRate) {
        zfp_stream_set_rate(zfp.get(), mode.value, zfp_type_float, 3, zfp_false);
    } else {
        zfp_stream_set_accuracy(zfp.get(), mode.value);
    }
    const auto rewind = [&] { zfp_stream_rewind(zfp.get()); };
    std::size_t length = 0;
    const auto encode = [&] { length = zfp_compress(zfp.get(), array.get()); };
    const auto decode = [&] { zfp_decompress(zfp.get(), array.get()); };
    run.sideBySide("encode, " + mode.name, fieldBytes,
                   {{"", [&] { own.encode(); }, {}, [&] { return own.length(); }},
                    {"zfp_compress", encode, rewind, [&] { return length; }}});
    run.sideBySide("decode, " + mode.name, fieldBytes,
                   {{"", [&] { own.decode(); }}, {"zfp_decompress", decode, rewind}});
}

void compareZfp(Run& run) {
    for (const Mode& mode : modes) {
        compareMode(run, mode);
    }
}

} // namespace

const Comparison zfpComparison = {
    "zfp", "ZFP block by block with libzfp on the whole field", {}, 0, 400, compareZfp};

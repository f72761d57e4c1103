// ZFP blocks of arbitrary bits and values, in every mode, with libzfp as the judge.
#include <cmath>
#include <cstring>
#include <zfp.h>

#include "fuzz.h"
#include "guarded.h"
#include "ntkdc.h"

namespace {

constexpr std::size_t blockValues = 64;
using Values = std::vector<Ntk32f>;

struct Mode {
    bool isRate;
    double value; // bits per value, tolerance
};

Mode modeFrom(fuzz::Input& in) {
    const bool isRate = in.flip();
    const unsigned value = in.word();
    return {isRate, isRate ? (1 + value % 4096) / 128.0
                           : std::ldexp(value % 1024, static_cast<int>(value / 1024) - 40)};
}

fuzz::Block stateFor() {
    int size = 0;
    FUZZ_CHECK(ntksZfpGetSize_32f(&size) == ntkStsNoErr);
    return fuzz::Block(static_cast<std::size_t>(size), 0xa5);
}

void setMode(const Mode& mode, const fuzz::Block& state) {
    FUZZ_CHECK((mode.isRate ? ntksZfpSetRate_32f(mode.value, state.data())
                            : ntksZfpSetAccuracy_32f(mode.value, state.data())) == ntkStsNoErr);
}

int lengthOf(const fuzz::Block& state) {
    int length = -1;
    FUZZ_CHECK(ntksZfpGetLength_32f(&length, state.data()) == ntkStsNoErr);
    return length;
}

class Libzfp {
public:
    // The bytes must have room for a block more than is coded.
    Libzfp(const fuzz::Block& bytes, const Mode& mode)
        : m_bits(stream_open(bytes.data(), static_cast<std::size_t>(bytes.size()))),
          m_zfp(zfp_stream_open(m_bits)) {
        if (mode.isRate) {
            zfp_stream_set_rate(m_zfp, mode.value, zfp_type_float, 3, zfp_false);
        } else {
            zfp_stream_set_accuracy(m_zfp, mode.value);
        }
    }
    Libzfp(const Libzfp&) = delete;
    Libzfp& operator=(const Libzfp&) = delete;
    ~Libzfp() {
        zfp_stream_close(m_zfp);
        stream_close(m_bits);
    }
    void encode(const Ntk32f* block) { zfp_encode_block_float_3(m_zfp, block); }
    void decode(Ntk32f* block) { zfp_decode_block_float_3(m_zfp, block); }
    std::size_t bitsRead() const { return stream_rtell(m_bits); }
    std::size_t flushedBytes() {
        stream_flush(m_bits);
        return stream_size(m_bits);
    }

private:
    bitstream* m_bits;
    zfp_stream* m_zfp;
};

constexpr std::size_t roomForBlock = 512;

void judgeStream(const Bytes& stream, const Mode& mode) {
    const GuardedBlock src(stream);
    const fuzz::Block state = stateFor();
    FUZZ_CHECK(ntksDecodeZfpInit_32f(src.data(), src.size(), state.data()) == ntkStsNoErr);
    setMode(mode, state);
    Bytes longer = stream;
    longer.resize(stream.size() + roomForBlock); // libzfp reads beyond the end
    const fuzz::Block bytes(longer);
    Libzfp libzfp(bytes, mode);
    NtkStatus status = ntkStsNoErr;
    for (int blocks = 0; status == ntkStsNoErr && blocks < 200; ++blocks) {
        const int before = lengthOf(state);
        const fuzz::Block found(blockValues * sizeof(Ntk32f), 0x5a);
        const fuzz::Block expected(blockValues * sizeof(Ntk32f), 0x5a);
        status = ntksDecodeZfp444_32f(reinterpret_cast<Ntk32f*>(found.data()), 4, 16, state.data());
        Values values(blockValues);
        libzfp.decode(values.data());
        const bool isWithin = libzfp.bitsRead() <= 8 * stream.size();
        FUZZ_CHECK(status == (isWithin ? ntkStsNoErr : ntkStsBadSrcData));
        if (isWithin) {
            std::memcpy(expected.data(), values.data(), blockValues * sizeof(Ntk32f));
        }
        FUZZ_CHECK(std::memcmp(found.data(), expected.data(), blockValues * sizeof(Ntk32f)) == 0);
        const auto bytesRead = static_cast<int>((libzfp.bitsRead() + 7) / 8);
        FUZZ_CHECK(lengthOf(state) == (isWithin ? bytesRead : before));
    }
}

// Infinities and NaN cannot be coded.
Values valuesFrom(fuzz::Input& in) {
    Values values;
    while (!in.empty() && values.size() < 20 * blockValues) {
        const auto bits = in.number<Ntk32u>();
        Ntk32f value = 0;
        std::memcpy(&value, &bits, sizeof value);
        values.push_back(std::isfinite(value) ? value : 1);
    }
    values.resize((values.size() + blockValues - 1) / blockValues * blockValues);
    return values;
}

void judgeEncoder(const Values& values, const Mode& mode, std::size_t capacity) {
    const GuardedBlock dst(capacity);
    const fuzz::Block state = stateFor();
    FUZZ_CHECK(ntksEncodeZfpInit_32f(dst.data(), dst.size(), state.data()) == ntkStsNoErr);
    setMode(mode, state);
    const fuzz::Block bytes(values.size() * sizeof(Ntk32f) * 3 + roomForBlock);
    Libzfp libzfp(bytes, mode);
    for (std::size_t at = 0; at < values.size(); at += blockValues) {
        const int before = lengthOf(state);
        const NtkStatus status = ntksEncodeZfp444_32f(&values[at], 4, 16, state.data());
        if (status != ntkStsNoErr) {
            FUZZ_CHECK(status == ntkStsDstTooSmall && lengthOf(state) == before);
            break;
        }
        libzfp.encode(&values[at]);
    }
    FUZZ_CHECK(ntksEncodeZfpFlush_32f(state.data()) == ntkStsNoErr);
    const int length = lengthOf(state);
    FUZZ_CHECK(0 <= length && length <= dst.size());
    FUZZ_CHECK(libzfp.flushedBytes() == static_cast<std::size_t>(length));
    FUZZ_CHECK(bytes.first(length) == Bytes(dst.data(), dst.data() + length));
    judgeStream(Bytes(dst.data(), dst.data() + length), mode);
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const Mode mode = modeFrom(in);
    if (in.flip()) {
        judgeStream(in.rest(), mode);
    } else {
        const std::size_t capacity = in.word() / 16U;
        judgeEncoder(valuesFrom(in), mode, capacity);
    }
    return 0;
}

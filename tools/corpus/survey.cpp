// geo: records of a seismic survey. A record is a header of big-endian numbers and the samples of
// one trace, each a 32-bit number in the hexadecimal floating point of old mainframes: a sign
// bit, an exponent of 16 (excess 64) and a 24-bit fraction whose first digit is not 0.
#include <cstdint>

#include "bytes.h"
#include "files.h"
#include "rng.h"

namespace corpus {

namespace {

constexpr int kSamplesPerRecord = 1500;
constexpr int kHeaderBytes = 240;

// The converter resolved 1/64 of a unit.
constexpr int kFractionBitsOfSample = 6;

// Returns the number sample / 64. The recorder kept 16 bits of the fraction, so the last byte of
// a number is always 0.
std::uint32_t hexadecimalFloat(std::int32_t sample) {
    if (sample == 0) {
        return 0;
    }
    const std::uint32_t sign = sample < 0 ? 0x80000000u : 0;
    const auto magnitude = static_cast<std::uint32_t>(sample < 0 ? -sample : sample);
    std::uint64_t fraction = std::uint64_t{magnitude} << (24 - kFractionBitsOfSample);
    std::uint32_t exponent = 64;
    for (; fraction >= 0x1000000u; fraction >>= 4) {
        ++exponent;
    }
    for (; fraction < 0x100000u; fraction <<= 4) {
        --exponent;
    }
    return sign | exponent << 24 | (static_cast<std::uint32_t>(fraction) & 0xFFFF00u);
}

// Ground motion: a resonance that noise keeps swinging (an autoregression of second order in
// fixed point, factors in 1/4096).
class Ground {
public:
    Ground(int periodFactor, int dampingFactor)
        : m_periodFactor(periodFactor), m_dampingFactor(dampingFactor) {}

    std::int32_t step(std::int32_t push) {
        const std::int32_t next =
            ((m_periodFactor * m_last - m_dampingFactor * m_beforeLast) >> 12) + push;
        m_beforeLast = m_last;
        m_last = next;
        return next;
    }

private:
    std::int64_t m_periodFactor;
    std::int64_t m_dampingFactor;
    std::int32_t m_last = 0;
    std::int32_t m_beforeLast = 0;
};

void appendHeader(int record, Random& random, std::string& out) {
    const std::size_t end = out.size() + kHeaderBytes;
    appendBig32(static_cast<std::uint32_t>(record), out);
    appendBig32(static_cast<std::uint32_t>(record), out);
    appendBig16(static_cast<std::uint32_t>(101 + record / 12), out);
    appendBig16(static_cast<std::uint32_t>(1 + record % 12), out);
    appendBig32(static_cast<std::uint32_t>(5000 + 25 * record), out);
    appendBig32(0xFFFF0000u + random.below(64), out);
    appendBig16(kSamplesPerRecord, out);
    appendBig16(2000, out); // microseconds between samples
    for (int i = 0; i < 12; ++i) {
        appendBig16(random.below(4) == 0 ? random.below(200) : 0, out);
    }
    out.resize(end, '\0');
}

void appendTrace(Random& random, std::string& out) {
    // A wave of about 16 samples and a slower one of about 40; both die away within a few waves.
    Ground fast(7300, 3700);
    Ground slow(7900, 3900);
    // The shot is strong at first; its echo fades over the trace, in 1/64 units.
    std::int32_t strength = random.between(6000, 16000);
    for (int i = 0; i < kSamplesPerRecord; ++i) {
        strength -= strength / 400;
        const std::int32_t push = random.bell(strength / 3 + 200);
        appendBig32(hexadecimalFloat(fast.step(push) + slow.step(push / 4)), out);
    }
}

} // namespace

std::string makeSurvey(std::size_t sizeBytes) {
    Random random(10);
    std::string out;
    for (int record = 1; out.size() < sizeBytes; ++record) {
        appendHeader(record, random, out);
        appendTrace(random, out);
    }
    out.resize(sizeBytes);
    return out;
}

} // namespace corpus

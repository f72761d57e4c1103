// Makes geo: samples of the ground's swing, as traces with a gain each. A sample is a
// floating-point number as mainframes had it, high byte first: a sign, an exponent of 16 that is
// biased by 64, and 24 bits of fraction of which the first four are not all zero. It is held in
// 64ths, and noise keeps the damped swing going. The constants were found by trial.
#include <bit>

#include "catalog.h"
#include "random.h"

namespace corpus {

constexpr std::size_t kTraceBytes = 4096;
constexpr int kPush = 1850;                 // of the strongest noise
constexpr int kPull = 25;                   // per mille of the swing that its speed loses in a step
constexpr int kFriction = 183;              // per mille of the speed that is lost
constexpr int kGain = 23, kGainTilt = 1273; // in eighths; of the choice of a gain

static std::uint32_t floatOf64ths(std::int64_t value) {
    // In 256ths, so that the point stands between two of the hexadecimal digits.
    const auto magnitude = static_cast<std::uint32_t>(value < 0 ? -value : value) * 4;
    const auto digits = (static_cast<unsigned>(std::bit_width(magnitude)) + 3) / 4;
    const std::uint32_t sign = value < 0 ? 1u << 31 : 0;
    return magnitude == 0 ? 0 : sign | (64 + digits - 2) << 24 | magnitude << (24 - 4 * digits);
}

std::string makeTraces(const FileKind& kind) {
    const Zipf gains(kGain, kGainTilt);
    Random random(1);
    std::string file;
    std::int64_t swing = 0, speed = 0;
    for (int gain = 0; file.size() < kind.sizeBytes;) {
        gain = file.size() % kTraceBytes == 0 ? gains.draw(random) : gain;
        speed += random.below(2 * kPush + 1) - kPush - (speed * kFriction + swing * kPull) / 1000;
        swing += speed;
        const std::uint32_t sample = floatOf64ths(swing * gain / 8);
        for (int shift = 24; shift >= 0; shift -= 8) {
            file.push_back(static_cast<char>(sample >> shift));
        }
    }
    return file.substr(0, kind.sizeBytes);
}

} // namespace corpus

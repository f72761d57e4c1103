#include "pscachescale.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

constexpr double inCacheHigh = 0.9;
constexpr double outOfCacheLow = 1.05;
constexpr int maxSteps = 31;    // no positive int survives more
constexpr int unreachable = 64; // and no area of two of them this many

int fractionOf(int bytes, double factor) {
    return static_cast<int>(std::min(factor * bytes, double{INT_MAX}));
}

} // namespace

psSizeBounds psInCacheBounds(int cacheBytes, double lowFactor) {
    return {fractionOf(cacheBytes, lowFactor), fractionOf(cacheBytes, inCacheHigh)};
}

psSizeBounds psOutOfCacheBounds(int cacheBytes) {
    return {fractionOf(cacheBytes, outOfCacheLow), INT_MAX};
}

int psClampedBytes(long long bytes) {
    return static_cast<int>(std::min(bytes, static_cast<long long>(INT_MAX)));
}

int psPowerOfTwoSteps(int current, int target) {
    const bool grow = current < target;
    if (grow ? current <= 0 : target <= 0) {
        return grow ? unreachable : -unreachable;
    }
    int steps = 0;
    if (grow) {
        for (long long size = current; size <= target; size *= 2) {
            ++steps;
        }
    } else {
        for (int size = current; size >= target; size /= 2) {
            --steps;
        }
    }
    return steps;
}

int psScaled(int value, int steps) {
    if (std::abs(steps) > maxSteps) {
        return 0;
    }
    if (steps < 0) {
        return value >> -steps;
    }
    const long long scaled = static_cast<long long>(value) << steps;
    return scaled == static_cast<int>(scaled) ? static_cast<int>(scaled) : 0;
}

bool psScaleArea(NtkiSize& size, int steps) {
    NtkiSize scaled = size;
    for (int i = 0; i < std::abs(steps); ++i) {
        const bool widthFirst =
            steps > 0 ? scaled.width <= scaled.height : scaled.width >= scaled.height;
        int& side = widthFirst ? scaled.width : scaled.height;
        side = psScaled(side, steps > 0 ? 1 : -1);
        if (side <= 0) {
            return false;
        }
    }
    size = scaled;
    return true;
}

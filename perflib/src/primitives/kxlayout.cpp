// The pixel layout questions of kxFunc.
#include "kxfunc.h"

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether a layout letter with a number stands at i: "C3" or "P3".
bool isMark(const psString& descr, int i) {
    return (descr[i] == 'C' || descr[i] == 'P') && isDigit(descr[i + 1]);
}

// The n-th mark, or the last one before it: a single mark holds for both sides.
psString markOf(const psString& descr, int n) {
    psString mark;
    for (int i = 0; i < descr.length() && n > 0; ++i) {
        if (isMark(descr, i)) {
            const bool alpha = descr[i] == 'C' && i > 0 && descr[i - 1] == 'A';
            mark = alpha ? descr.substr(i - 1, 3) : descr.substr(i, 2);
            --n;
        }
    }
    return mark;
}

// 1 for the source arguments, 2 for the destinations.
int sideOf(kxArg arg) {
    return arg == kxSrc || arg == kxSrc2 ? 1 : 2;
}

} // namespace

psString kxFunc::channelsName(int n) const {
    return markOf(descrName(), n);
}

psString kxFunc::channelsName(kxArg arg) const {
    return channelsName(sideOf(arg));
}

int kxFunc::channels(int n) const {
    const psString mark = channelsName(n);
    return mark.empty() ? 1 : mark[mark.length() - 1] - '0';
}

void kxFunc::getChannels(int& src, int& dst) const {
    src = channels(1);
    dst = channels(2);
    updateChannels(src, dst);
}

int kxFunc::channels(kxArg arg) const {
    int src, dst;
    getChannels(src, dst);
    return sideOf(arg) == 1 ? src : dst;
}

bool kxFunc::plane(int n) const {
    return channelsName(n).startsWith("P");
}

bool kxFunc::plane(kxArg arg) const {
    bool src = plane(1);
    bool dst = plane(2);
    updatePlanes(src, dst);
    return sideOf(arg) == 1 ? src : dst;
}

bool kxFunc::alpha(int n) const {
    return channelsName(n).startsWith("A");
}

bool kxFunc::alpha(kxArg arg) const {
    return alpha(sideOf(arg));
}

bool kxFunc::coi() const {
    const psString descr = descrName();
    for (int i = 0; i < descr.length(); ++i) {
        if (descr[i] == 'C' && !isDigit(descr[i + 1])) {
            return true;
        }
    }
    return false;
}

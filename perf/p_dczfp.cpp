// The ZFP tests. One measured call codes or decodes the whole field: a single block takes hardly
// longer than the reading of the clock.

#include "p_dczfp.h"

#include "dchooks.h"
#include "kxtiming.h"

namespace dczfp {
kxVector fieldBuf, comprBuf, decomprBuf;
Ntk8u* pState = nullptr;
bool size_xyz = false;
int comprLen = 0;
psIterator<int> rate;
} // namespace dczfp
using namespace dczfp;

static Ntk8u* bytes(kxVector& vector) {
    return static_cast<Ntk8u*>(vector.data());
}

static Ntk32f* values(kxVector& vector) {
    return static_cast<Ntk32f*>(vector.data());
}

// ---- Calls and init bodies --------------------------------------------------------------------

// Calls codeBlock(offset of the block's first value) for all blocks, x fastest, until one fails.
static int forEachBlock(auto codeBlock) {
    int status = ntkStsNoErr;
    for (int z = 0; z < sideLen; z += 4) {
        for (int y = 0; y < sideLen; y += 4) {
            for (int x = 0; x < sideLen && status == ntkStsNoErr; x += 4) {
                status = codeBlock((z * sideLen + y) * sideLen + x);
            }
        }
    }
    return status;
}

static constexpr int stepY = sideLen;
static constexpr int stepZ = sideLen * sideLen;

// The statuses in both init bodies are not checked: the measured call fails if they did.
static int tinit_ntksEncodeZfp444_32f() {
    ntksEncodeZfpInit_32f(bytes(comprBuf), comprBuf.size(), pState);
    ntksZfpSetRate_32f(rate.value(), pState);
    return 0;
}
static int tcall_ntksEncodeZfp444_32f() {
    const Ntk32f* const field = values(fieldBuf);
    const int status = forEachBlock(
        [field](int offset) { return ntksEncodeZfp444_32f(field + offset, stepY, stepZ, pState); });
    return status == ntkStsNoErr ? ntksEncodeZfpFlush_32f(pState) : status;
}
KX_TIMING_I(ntksEncodeZfp444_32f)

static int tinit_ntksDecodeZfp444_32f() {
    ntksDecodeZfpInit_32f(bytes(comprBuf), comprLen, pState);
    ntksZfpSetRate_32f(rate.value(), pState);
    return 0;
}
static int tcall_ntksDecodeZfp444_32f() {
    Ntk32f* const field = values(decomprBuf);
    return forEachBlock(
        [field](int offset) { return ntksDecodeZfp444_32f(field + offset, stepY, stepZ, pState); });
}
KX_TIMING_I(ntksDecodeZfp444_32f)

// ---- Preparation ------------------------------------------------------------------------------

// A hill on a bent slope, in -1..1 of each dimension. Uses + - * / only: they are correctly
// rounded, so the field has the same bits on every machine; libm functions would not guarantee
// that.
static double fieldValue(double x, double y, double z) {
    const double hill = 1 / (1 + 2 * x * x + 3 * y * y + 5 * (z - 0.25) * (z - 0.25));
    return hill + 0.5 * x * y - 0.3 * z + 0.1;
}

static void makeField() {
    const auto coordinate = [](int i) { return (i - 0.5 * (sideLen - 1)) / (0.5 * sideLen); };
    auto* element = reinterpret_cast<dcElement<Ntk32f>*>(values(fieldBuf));
    for (int z = 0; z < sideLen; z++) {
        for (int y = 0; y < sideLen; y++) {
            for (int x = 0; x < sideLen; x++) {
                (element++)->value =
                    static_cast<Ntk32f>(fieldValue(coordinate(x), coordinate(y), coordinate(z)));
            }
        }
    }
    size_xyz = true;
}

static bool createStreamState() {
    int size = 0;
    return passed(ntksZfpGetSize_32f(&size), "ntksZfpGetSize_32f") &&
           isSize(size, "ntksZfpGetSize_32f") && createState(pState, size);
}

// The decoder's input, and the length that the encoder's ratio is taken from.
static bool encodeField() {
    tinit_ntksEncodeZfp444_32f();
    return passed(tcall_ntksEncodeZfp444_32f(), "ntksEncodeZfp444_32f") &&
           passed(ntksZfpGetLength_32f(&comprLen, pState), "ntksZfpGetLength_32f") &&
           arePossible({{"length", comprLen, 1, comprBuf.size()}}, "ntksZfpGetLength_32f");
}

bool TimdcZfp444::canStart() {
    rate.init(4, "rate");
    for (const int bitsPerValue : {4, 8, 16}) {
        rate.add(bitsPerValue);
    }
    regParm(rate);
    fieldBuf.init(kx32f);
    comprBuf.init(kx8u);
    decomprBuf.init(kx32f);
    return true;
}

bool TimdcZfp444::initData() {
    constexpr int mostBits = 32; // of a value
    if (!isWithin(rate, mostBits) || !createVectors({&fieldBuf}, fieldLen) ||
        !createVectors({&comprBuf}, fieldBuf.objectSize()) ||
        !createVectors({&decomprBuf}, fieldLen) || !createStreamState()) {
        return false;
    }
    makeField();
    return encodeField();
}

void TimdcZfp444::flushData() {
    release({&fieldBuf, &comprBuf, &decomprBuf}, {&pState});
    size_xyz = false;
}

long long TimdcZfp444::length() const {
    return fieldBuf.objectSize();
}

psString TimdcZfp444::inputName() const {
    return {};
}

const psParameter* TimdcZfp444::variant() const {
    return &rate;
}

std::optional<double> TimdcZfp444::ratio() const {
    return static_cast<double>(length()) / comprLen;
}

// The calls say nothing of lengths.
dcLengths TimdcZfp444::lengthsLeft() const {
    return {};
}

// Per value of the field.
double TimdcZfpEncode444::getDivisor() {
    return size_xyz ? 32768.0 : 0.0;
}

// Per compressed byte, as LZ4's decoder.
double TimdcZfpDecode444::getDivisor() {
    return comprLen;
}

[[maybe_unused]] static const bool g_registered = [] {
    constexpr const char* source = "perf/p_dczfp";
    registerHooks();
    KX_REGISTER_IBS_X(TimdcZfpEncode444, ntksEncodeZfp444_32f, source);
    KX_REGISTER_IBS_X(TimdcZfpDecode444, ntksDecodeZfp444_32f, source);
    return true;
}();

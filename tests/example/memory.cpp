// Tests of the memory functions. A test is a call of the function, without arguments, the timing
// functions that are made from it, and a class that prepares what the call works on.

#include <climits>
#include <cstring>

#include "kxtiming.h"
#include "example.h"

namespace {

kxVector g_src(kx8u);
kxVector g_dst(kx8u);

// Copying a vector into another one. In cache mode ("-C") the harness scales the length until both
// vectors fit into the largest cache, then until they do not.
class CopyTest : public kxTest {
public:
    using kxTest::kxTest;
    bool canStart() override {
        regCacheParm(g_length);
        return true;
    }
    bool initData() override {
        return g_src.createVector(g_length.value(), SET_RANDOM, 0.0, 0.0) &&
               g_dst.createVector(g_length.value());
    }
    void flushData() override {
        g_src.deleteVector();
        g_dst.deleteVector();
    }
    double getDivisor() override { return g_length.value(); }
    psString getUnit() override { return "byte"; }
};

int tcall_memcpy() {
    memcpy(g_dst.data(), g_src.data(), static_cast<size_t>(g_length.value()));
    return 0;
}
KX_TIMING(memcpy)

// Moving the rows of an image down by one: source and destination overlap. Cache mode scales width
// and height, and the size of the image alone counts.
class MoveTest : public kxTest {
public:
    using kxTest::kxTest;
    bool canStart() override {
        regCacheParm(g_size, g_dst);
        return true;
    }
    bool initData() override {
        const double bytes = getDivisor() + g_size.value().width; // a row more than is moved
        if (bytes > INT_MAX) {
            g_ostrm << PS_ERR << "-- Image " << g_size.valueString() << " is too large\n" << PS_END;
            return false;
        }
        return g_dst.createVector(static_cast<int>(bytes));
    }
    void flushData() override { g_dst.deleteVector(); }
    double getDivisor() override {
        return static_cast<double>(g_size.value().width) * g_size.value().height;
    }
    psString getUnit() override { return "byte"; }
};

int tcall_memmove() {
    Ntk8u* const image = static_cast<Ntk8u*>(g_dst.data());
    const auto rowBytes = static_cast<size_t>(g_size.value().width);
    memmove(image + rowBytes, image, rowBytes * static_cast<size_t>(g_size.value().height));
    return 0;
}
KX_TIMING(memmove)

// Filling a vector: a test that does not support cache mode.
class FillTest : public kxTest {
public:
    using kxTest::kxTest;
    bool canStart() override {
        regParm(g_length);
        return true;
    }
    bool initData() override { return g_dst.createVector(g_length.value()); }
    void flushData() override { g_dst.deleteVector(); }
    double getDivisor() override { return g_length.value(); }
    psString getUnit() override { return "byte"; }
};

int tcall_memset() {
    memset(g_dst.data(), 1, static_cast<size_t>(g_length.value()));
    return 0;
}
KX_TIMING(memset)

[[maybe_unused]] const bool g_registered = [] {
    constexpr const char* source = "tests/example/memory";
    KX_REGISTER(CopyTest, memcpy, source);
    KX_REGISTER(MoveTest, memmove, source);
    KX_REGISTER(FillTest, memset, source);
    return true;
}();

} // namespace

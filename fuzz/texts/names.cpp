// Names of functions: the parts make the name again, the types belong to the tokens, names have an
// order.
#include "kxfunc.h"
#include "text.h"

namespace {

int sign(int order) {
    return (order > 0) - (order < 0);
}

void checkParts(const kxFunc& function) {
    psString base, types, descr;
    function.parseFunction(base, types, descr);
    FUZZ_CHECK(base == function.baseName() && types == function.typeName());
    FUZZ_CHECK(descr == function.descrName());
    psString again = function.prefix() + base;
    if (!types.empty()) {
        again += "_" + types;
        again += descr.empty() ? psString() : "_" + descr;
    }
    // An empty description behind its "_" is dropped.
    FUZZ_CHECK(again == function.name() || again + "_" == function.name());
    FUZZ_CHECK(types.empty() == (lenOfType(types) == 0));
    // The first token ends the base.
    const psString rest = function.name().substr(function.prefix().length());
    for (int i = rest.find("_"); i != psString::npos && i < base.length();
         i = rest.find("_", i + 1)) {
        FUZZ_CHECK(lenOfType(rest.substr(i + 1)) == 0);
    }

    psString t1, t2, t3;
    function.parseFunction(base, t1, t2, t3, descr);
    FUZZ_CHECK(types.startsWith(t1));
    FUZZ_CHECK(t1.empty() == types.empty() && t2.empty() == types.empty());
    FUZZ_CHECK(t3.empty() == types.empty());
}

void checkTypes(const kxFunc& function) {
    kxType src, src2, dst, dst2;
    function.getTypes(src, src2, dst, dst2);
    FUZZ_CHECK(src == function.srcType() && src2 == function.src2Type());
    FUZZ_CHECK(dst == function.dstType() && dst2 == function.dst2Type());
    const kxType implied = function.typeFromBase();
    FUZZ_CHECK(implied == kxUndef || implied == dst);
    for (int n = 1; n <= 3; ++n) {
        const kxType type = function.type(n);
        const psString name = typeToString(type);
        FUZZ_CHECK(type == kxUndef || stringToType(name) == type);
        FUZZ_CHECK((kxTypeBytes(type) > 0) == (type != kxUndef));
        FUZZ_CHECK(kxIsComplex(kxRealType(type)) == false);
    }
    FUZZ_CHECK(function.type(4) == kxUndef);
}

void checkChannels(const kxFunc& function) {
    int src = 0, dst = 0;
    function.getChannels(src, dst);
    FUZZ_CHECK(src == function.srcChannels() && dst == function.dstChannels());
    for (int n = 1; n <= 2; ++n) {
        FUZZ_CHECK(function.channels(n) >= 0);
        FUZZ_CHECK(function.descrName().contains(function.channelsName(n)));
        FUZZ_CHECK(!function.alpha(n) || function.channelsName(n).startsWith("AC"));
        FUZZ_CHECK(!function.plane(n) || function.channelsName(n).startsWith("P"));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    constexpr int longest = 60;
    const kxFunc functions[] = {fuzz::takeWord(in).substr(0, longest),
                                fuzz::takeWord(in).substr(0, longest),
                                fuzz::takeWord(in).substr(0, longest)};
    for (const kxFunc& function : functions) {
        checkParts(function);
        checkTypes(function);
        checkChannels(function);
        FUZZ_CHECK(function.compare(function) == 0);
    }
    const int order01 = sign(functions[0].compare(functions[1]));
    const int order12 = sign(functions[1].compare(functions[2]));
    FUZZ_CHECK(order01 == -sign(functions[1].compare(functions[0])));
    if (order01 == order12) {
        FUZZ_CHECK(sign(functions[0].compare(functions[2])) == order01);
    }
    return 0;
}

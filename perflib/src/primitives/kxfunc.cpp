#include "kxfunc.h"

namespace {

// Cuts the type token off the front of types; empty when there is none.
psString takeType(psString& types) {
    const int length = lenOfType(types);
    const psString token = types.substr(0, length);
    types = types.substr(length);
    return token;
}

// Position of the first "_" that a type token follows, npos when there is none.
int findTypes(const psString& name, int from) {
    int i = name.find("_", from);
    while (i != psString::npos && lenOfType(name.substr(i + 1)) == 0) {
        i = name.find("_", i + 1);
    }
    return i;
}

// How base names whose arguments do not follow their type tokens depart from them.
enum class TypeRule {
    none,
    realResult,        // real results of complex data
    complexResult,     // complex results of real data
    complexFromReals,  // the token names the complex result, the sources are its parts
    secondTokenSource, // the second token is the second source also when it is the last
    oneSource,
    maskResult, // the result is a mask of bytes
};

struct SpecialBase {
    const char* base; // with the tokens where only this combination is special
    TypeRule rule;
};

constexpr SpecialBase specialBases[] = {
    {"Imag", TypeRule::realResult},
    {"Magnitude", TypeRule::realResult},
    {"Phase", TypeRule::realResult},
    {"CplxToReal", TypeRule::realResult},
    {"CartToPolar", TypeRule::realResult},
    {"PowerSpectr", TypeRule::realResult},
    {"PolarToCart", TypeRule::complexFromReals},
    {"RealToCplx", TypeRule::complexResult},
    {"Goertz", TypeRule::complexResult},
    {"DotProd", TypeRule::secondTokenSource},
    {"Mul_16u16s", TypeRule::secondTokenSource},
    {"Mean", TypeRule::oneSource},
    {"Copy", TypeRule::oneSource},
    {"Compare", TypeRule::maskResult},
};

TypeRule ruleOf(const kxFunc& function) {
    const psString base = function.baseName();
    const psString baseAndTypes = base + "_" + function.typeName();
    for (const SpecialBase& special : specialBases) {
        if (base == special.base || baseAndTypes == special.base) {
            return special.rule;
        }
    }
    return TypeRule::none;
}

} // namespace

psString kxFunc::prefix() const {
    const psString start = m_name.substr(0, 4);
    return start == "ntks" || start == "ntki" ? start : psString();
}

psString kxFunc::baseName() const {
    psString base, types, descr;
    parseFunction(base, types, descr);
    return base;
}

psString kxFunc::typeName() const {
    psString base, types, descr;
    parseFunction(base, types, descr);
    return types;
}

psString kxFunc::descrName() const {
    psString base, types, descr;
    parseFunction(base, types, descr);
    return descr;
}

void kxFunc::parseFunction(psString& base, psString& types, psString& descr) const {
    const int begin = prefix().length();
    const int baseEnd = findTypes(m_name, begin);
    types = descr = "";
    if (baseEnd == psString::npos) {
        base = m_name.substr(begin);
        return;
    }
    base = m_name.substr(begin, baseEnd - begin);
    const int typesEnd = m_name.find("_", baseEnd + 1);
    if (typesEnd == psString::npos) {
        types = m_name.substr(baseEnd + 1);
    } else {
        types = m_name.substr(baseEnd + 1, typesEnd - baseEnd - 1);
        descr = m_name.substr(typesEnd + 1);
    }
}

void kxFunc::parseFunction(psString& base, psString& t1, psString& t2, psString& t3,
                           psString& descr) const {
    psString types;
    parseFunction(base, types, descr);
    t1 = takeType(types);
    t2 = takeType(types);
    t2 = t2.empty() ? t1 : t2;
    t3 = takeType(types);
    t3 = t3.empty() ? t2 : t3;
}

kxType kxFunc::type(int n) const {
    psString base, t1, t2, t3, descr;
    parseFunction(base, t1, t2, t3, descr);
    return stringToType(n == 1 ? t1 : n == 2 ? t2 : n == 3 ? t3 : psString());
}

kxType kxFunc::type(kxArg arg) const {
    kxType src, src2, dst, dst2;
    getTypes(src, src2, dst, dst2);
    switch (arg) {
    case kxSrc: return src;
    case kxSrc2: return src2;
    case kxDst: return dst;
    case kxDst2: return dst2;
    }
    return kxUndef;
}

void kxFunc::getTypes(kxType& src, kxType& src2, kxType& dst, kxType& dst2) const {
    psString base, t1, t2, t3, descr;
    parseFunction(base, t1, t2, t3, descr);
    src = stringToType(t1);
    dst = dst2 = stringToType(t3);
    src2 = t2 == t3 ? src : stringToType(t2);
    updateTypes(src, src2, dst, dst2);
}

kxType kxFunc::typeFromBase() const {
    if (type(1) == kxUndef) {
        return kxUndef;
    }
    switch (ruleOf(*this)) {
    case TypeRule::realResult: return kxRealType(type(3));
    case TypeRule::complexResult:
    case TypeRule::complexFromReals: return kxComplexType(type(3));
    case TypeRule::maskResult: return kx8u;
    default: return kxUndef;
    }
}

void kxFunc::updateTypes(kxType& src, kxType& src2, kxType& dst, kxType& dst2) const {
    const kxType implied = typeFromBase();
    if (implied != kxUndef) {
        dst = dst2 = implied;
    }
    switch (ruleOf(*this)) {
    case TypeRule::complexFromReals: src = src2 = kxRealType(src); break;
    case TypeRule::secondTokenSource: src2 = type(2); break;
    case TypeRule::oneSource: src2 = src; break;
    default: break;
    }
}

int kxFunc::compare(const kxFunc& other) const {
    psString base, types, descr, otherBase, otherTypes, otherDescr;
    parseFunction(base, types, descr);
    other.parseFunction(otherBase, otherTypes, otherDescr);
    if (const int order = base.compare(otherBase)) {
        return order;
    }
    if (const int order = compareTypes(types, otherTypes)) {
        return order;
    }
    return compareDescr(descr, otherDescr);
}

int kxFunc::compareTypes(const psString& a, const psString& b) {
    psString restA(a), restB(b);
    while (lenOfType(restA) > 0 && lenOfType(restB) > 0) {
        if (const int order = stringToType(takeType(restA)) - stringToType(takeType(restB))) {
            return order;
        }
    }
    return restA.compare(restB);
}

int kxFunc::compareDescr(const psString& a, const psString& b) {
    return a.compare(b);
}

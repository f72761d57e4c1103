#include "kxdefault.h"

#include "pstest.h"

bool kxScaleIterator::isScaled(const kxFunc& function) {
    const psString descr = function.descrName();
    return descr.contains("Sfs") || descr.contains("Fix");
}

void kxScaleIterator::initValues(const psString& function, std::initializer_list<int> values) {
    m_scaled = isScaled(function);
    if (!m_scaled) {
        psIterator<int>::init(0, "");
        return;
    }
    psIterator<int>::init(*values.begin(), "ScaleFactor");
    for (const int value : values) {
        add(value);
    }
}

int kxScaleIterator::colmIndex() const {
    return psTest::m_numParmsColm - 1;
}

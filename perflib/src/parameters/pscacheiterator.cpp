#include "pscacheiterator.h"

#include <cstdio>

#include "psalloc.h"
#include "pscachescale.h"
#include "pslibrary.h"
#include "psobject.h"
#include "psostream.h"
#include "psvalue.h"

namespace {

constexpr double defaultFactor = 0.1;
constexpr double minFactor = 0.01;
constexpr double factorTolerance = 0.0001;
constexpr int maxRepeats = 10;
constexpr int coarseRepeats = 2; // below this many repetitions only coarse steps have been tried

} // namespace

psCacheIterator::psCacheIterator(psParameter& wrapped, psObject* object, Setter setter)
    : psIterator<int>(PS_IN_CACHE, "cacheIterator"), m_wrapped(&wrapped), m_object(object),
      m_setter(setter) {
    add(PS_IN_CACHE);
    add(PS_OUT_OF_CACHE);
}

bool psCacheIterator::nextValue() {
    m_repeats = 0;
    m_tries = "";
    m_factor = defaultFactor;
    return psIterator<int>::nextValue() && setHasValue(m_wrapped->firstValue());
}

void psCacheIterator::addTo(psNamedValues& values) const {
    values.add("Cache", getComment());
    m_wrapped->addTo(values);
}

int psCacheIterator::cacheSize() {
    int bytes = 0;
    const bool known = ntk_GetMaxCacheSizeB && ntk_GetMaxCacheSizeB(&bytes) == ntkStsNoErr;
    return known ? bytes : 0;
}

static psSizeBounds boundsOf(bool inCache, double factor) {
    const int cacheBytes = psCacheIterator::cacheSize();
    return inCache ? psInCacheBounds(cacheBytes, factor) : psOutOfCacheBounds(cacheBytes);
}

int psCacheIterator::highSize() const {
    return boundsOf(isInCache(), m_factor).high;
}

int psCacheIterator::lowSize() const {
    return boundsOf(isInCache(), m_factor).low;
}

int psCacheIterator::getObjectSize() const {
    return m_object ? m_object->objectSize() : 0;
}

int psCacheIterator::getTotalSize() {
    return psClampedBytes(psSumOfBlocks());
}

psString psCacheIterator::getComment() const {
    switch (value()) {
    case PS_IN_CACHE: return "inCache";
    case PS_OUT_OF_CACHE: return "outofCache";
    default: return "";
    }
}

// Too small once more after a fine step: smaller data may do, too, when the smallest admitted size
// is lowered; that is tried once.
bool psCacheIterator::validateSize() {
    m_totalBytes = getTotalSize();
    m_objectBytes = getObjectSize();
    if (m_objectBytes == 0) {
        m_objectBytes = m_totalBytes;
    }
    const bool tooSmall = m_objectBytes < lowSize();
    const bool tooLarge = m_totalBytes > highSize();
    if (!tooSmall && !tooLarge) {
        m_repeats = 0;
        m_tries = "";
        return true;
    }
    collectTries(tooSmall, tooLarge);
    if (tooSmall && tooLarge) {
        lowerFactor();
        return false;
    }
    if (m_repeats < coarseRepeats || !tooSmall || !m_wasTooSmall) {
        m_wasTooSmall = tooSmall;
        return false;
    }
    return lowerFactor() && validateSize();
}

// False when it is at its lowest: there is nothing left to try.
bool psCacheIterator::lowerFactor() {
    if (m_factor - factorTolerance > minFactor) {
        m_factor = minFactor;
        return true;
    }
    m_repeats = givenUp;
    return false;
}

void psCacheIterator::collectTries(bool tooSmall, bool tooLarge) {
    const psString begin = "      " + getComment() + " try: cacheParm=" + valueString();
    psString lines;
    if (tooSmall) {
        lines << begin << (m_object ? " objectSize=" : " totalSize=") << m_objectBytes << " < "
              << lowSize() << "\n";
    }
    if (tooLarge) {
        lines << begin << " totalSize=" << m_totalBytes << " > " << highSize() << "\n";
    }
    m_tries += lines;
    g_ostrm << PS_NORMAL << lines << PS_END;
}

bool psCacheIterator::repeatValue() {
    if (++m_repeats > maxRepeats) {
        return false;
    }
    const bool shrink = isInCache() && m_totalBytes > highSize();
    const int current = shrink ? m_totalBytes : m_objectBytes;
    const int target = shrink ? highSize() : lowSize();
    const bool fine = m_repeats >= coarseRepeats;
    return m_setter ? m_setter(m_wrapped, current, target, fine)
                    : setNewValueToParm(current, target, fine);
}

bool psCacheIterator::setNewValueToParm(int, int, bool) {
    return false;
}

void psCacheIterator::outputInfo() const {
    if (g_ostrm.outLevel() <= 3) {
        g_ostrm << PS_ERR << m_tries << PS_END;
    }
}

// The steps from current towards target bytes: one when fine, else as many as it takes.
static int stepsTowards(int current, int target, bool fine) {
    if (fine) {
        return current < target ? 1 : -1;
    }
    return psPowerOfTwoSteps(current, target);
}

bool psCacheIteratorInt::updateValue(int& value, int current, int target, bool fine) {
    const int scaled = psScaled(value, stepsTowards(current, target, fine));
    if (scaled <= 0) {
        return false;
    }
    value = scaled;
    return true;
}

bool psCacheIteratorInt::setNewValueToParm(int current, int target, bool fine) {
    int value = m_length.value();
    const bool changed = updateValue(value, current, target, fine);
    if (changed) {
        m_length.setValue(value);
    }
    return changed;
}

bool psCacheIteratorSize::updateValue(NtkiSize& size, int current, int target, bool fine) {
    return psScaleArea(size, stepsTowards(current, target, fine));
}

bool psCacheIteratorSize::setNewValueToParm(int current, int target, bool fine) {
    NtkiSize size = m_size.value();
    const bool changed = updateValue(size, current, target, fine);
    if (changed) {
        m_size.setValue(size);
    }
    return changed;
}

psString& operator<<(psString& s, const NtkiSize& size) {
    return s << size.width << "x" << size.height;
}

void operator<<(NtkiSize& size, const psString& s) {
    NtkiSize read;
    char rest;
    const int items = sscanf(s.c_str(), "%dx%d%c", &read.width, &read.height, &rest);
    s.setBad(items != 2 && !s.empty());
    if (items == 2) {
        size = read;
    }
}

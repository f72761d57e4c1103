// Writes the entries of a match search and counts their symbols.
#pragma once

#include "../anyaddress.h"
#include "symbols.h"

namespace ntk::deflate {

class EntryWriter {
public:
    EntryWriter(Ntk8u* lit, Ntk16u* dist, int capacity, Ntk32u* litFreq, Ntk32u* distFreq)
        : m_lit(lit), m_dist(atAnyAddress(dist)), m_left(capacity),
          m_litFreq(atAnyAddress(litFreq)), m_distFreq(atAnyAddress(distFreq)) {}

    bool isFull() const { return m_left == 0; }
    int left() const { return m_left; }

    void literal(Ntk8u value) {
        put(value, 0);
        ++m_litFreq[value].value;
    }
    void match(int length, int distance) {
        put(static_cast<Ntk8u>(length - minMatch), static_cast<Ntk16u>(distance));
        ++m_litFreq[firstLengthSymbol + lengthSymbolOf[length - minMatch]].value;
        ++m_distFreq[distanceSymbolOf[slotOf(static_cast<unsigned>(distance))]].value;
    }

private:
    void put(Ntk8u lit, Ntk16u dist) {
        *m_lit++ = lit;
        (m_dist++)->value = dist;
        --m_left;
    }

    Ntk8u* m_lit;
    AnyAddress<Ntk16u>* m_dist;
    int m_left;
    AnyAddress<Ntk32u>* m_litFreq;
    AnyAddress<Ntk32u>* m_distFreq;
};

} // namespace ntk::deflate

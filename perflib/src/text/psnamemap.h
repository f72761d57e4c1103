#pragma once

#include "psstring.h"

// An ordered table of names and the values they stand for. Typed texts may abbreviate: the first
// name that begins with the text, in any case of letters, counts, so the order decides between
// names that begin alike.
template <class T> class psNameMap {
public:
    void clear() { m_entries.clear(); }
    void add(const psString& name, const T& value) { m_entries.append({name, value}); }

    // The value that text stands for; T{}, with the flag of text set, when no name fits.
    T find(const psString& text) const {
        for (const Entry& entry : m_entries) {
            if (fitString(text, entry.name)) {
                text.setBad(false);
                return entry.value;
            }
        }
        text.setBad(true);
        return T{};
    }

    // The first name of value; empty when it has none.
    psString nameOf(const T& value) const {
        for (const Entry& entry : m_entries) {
            if (entry.value == value) {
                return entry.name;
            }
        }
        return {};
    }

    psStringList names() const {
        psStringList list;
        for (const Entry& entry : m_entries) {
            list.append(entry.name);
        }
        return list;
    }

private:
    struct Entry {
        psString name;
        T value;
    };
    psList<Entry> m_entries;
};

// The texts with the separator between them.
psString psJoined(const psStringList& texts, const char* separator);

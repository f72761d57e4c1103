#pragma once

#include "psstring.h"

struct psDataItem {
    psString name, value;
};

// Named values in the order in which they were first set: the items of a report.
class psDataList : public psList<psDataItem> {
public:
    // Replaces the value of the item with exactly that name, or adds an item at the end.
    void set(const psString& name, const psString& value);
    // Null when there is no such item.
    const psString* find(const psString& name) const;
    // False (value untouched) when there is no such item.
    bool get(const psString& name, psString& value) const;
};

#include "psdata.h"

void psDataList::set(const psString& name, const psString& value) {
    for (psDataItem& item : *this) {
        if (item.name == name) {
            item.value = value;
            return;
        }
    }
    append({name, value});
}

const psString* psDataList::find(const psString& name) const {
    for (const psDataItem& item : *this) {
        if (item.name == name) {
            return &item.value;
        }
    }
    return nullptr;
}

bool psDataList::get(const psString& name, psString& value) const {
    const psString* const found = find(name);
    if (found) {
        value = *found;
    }
    return found != nullptr;
}

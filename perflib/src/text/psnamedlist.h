#pragma once

#include <iterator>
#include <string_view>
#include <unordered_map>

#include "psstring.h"

// A list of items, each with a name of its own, found without a walk over the others: files of a
// hundred thousand lines must not be read in quadratic time. Owns its items. Names are compared
// exactly and must not be changed while an item is in the list.
template <class Item, psString Item::*Name> class psNamedList : public psList<Item*> {
    using List = psList<Item*>;

public:
    psNamedList() = default;
    psNamedList(const psNamedList&) = delete;
    psNamedList& operator=(const psNamedList&) = delete;
    ~psNamedList() override { removeAll(); }

    bool exist(const psString& name) const { return find(name) != nullptr; }
    Item* find(const psString& name) const { // null when absent
        const auto place = m_places.find(keyOf(name));
        return place == m_places.end() ? nullptr : *place->second;
    }
    // Takes the item, whose name must be new.
    Item& append(Item* item) {
        List::append(item);
        m_places.emplace(keyOf(item->*Name), std::prev(this->end()));
        return *item;
    }
    bool remove(const psString& name) { // false when absent
        const auto place = m_places.find(keyOf(name));
        if (place == m_places.end()) {
            return false;
        }
        const auto item = place->second;
        m_places.erase(place); // it holds the item's own name
        delete *item;
        List::erase(item);
        return true;
    }
    void removeAll() {
        m_places.clear();
        for (const Item* item : *this) {
            delete item;
        }
        List::clear();
    }

private:
    // They would leave the places behind.
    using List::clear;
    using List::erase;
    using List::insert;
    using List::removeBack;

    static std::string_view keyOf(const psString& name) { return name.c_str(); }

    std::unordered_map<std::string_view, typename List::iterator> m_places;
};

#pragma once

#include <cstddef>
#include <list>
#include <utility>

// The harness's only collection: an ordered doubly linked list. Insertion at the end or before a
// position keeps the order, and no insertion or removal invalidates another element's iterator,
// which the walks that edit while walking (argument files) rely on.
template <class T> class psList {
public:
    using value_type = T;
    using iterator = typename std::list<T>::iterator;
    using const_iterator = typename std::list<T>::const_iterator;

    psList() = default;
    psList(const psList&) = default;
    psList(psList&&) noexcept = default;
    psList& operator=(const psList&) = default;
    psList& operator=(psList&&) noexcept = default;
    virtual ~psList() = default;

    iterator begin() { return m_items.begin(); }
    iterator end() { return m_items.end(); }
    const_iterator begin() const { return m_items.begin(); }
    const_iterator end() const { return m_items.end(); }
    // Number of elements. (Named so that classes which are lists may have a size() of their own.)
    int count() const { return static_cast<int>(m_items.size()); }
    bool empty() const { return m_items.empty(); }
    T& front() { return m_items.front(); }
    T& back() { return m_items.back(); }
    const T& front() const { return m_items.front(); }
    const T& back() const { return m_items.back(); }

    void append(T value) { m_items.push_back(std::move(value)); }
    // Inserts before position; returns the new element's position.
    iterator insert(iterator position, T value) {
        return m_items.insert(position, std::move(value));
    }
    // Returns the position after the removed element.
    iterator erase(iterator position) { return m_items.erase(position); }
    void removeBack() { m_items.pop_back(); }
    void clear() { m_items.clear(); }
    // Moves the element at from before position, in this list.
    void moveBefore(iterator position, iterator from) { m_items.splice(position, m_items, from); }
    // Stable.
    template <class Less> void sort(Less less) { m_items.sort(less); }

private:
    std::list<T> m_items;
};

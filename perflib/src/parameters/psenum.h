#pragma once

#include "psiterator.h"

// An iterator over some of a set of admitted values. Without a validation list everything
// convertible is admitted.
template <class T> class psEnumIterator_NCS : public psIterator_NSC<T> {
public:
    using psIterator_NSC<T>::psIterator_NSC;

    void addValidation(T value) { m_validation.append(value); }
    // Appends the values of a list (null: nothing).
    void addValidation(const psList<T>* values) {
        if (values) {
            for (const T& value : *values) {
                m_validation.append(value);
            }
        }
    }
    // Admits exactly the values that are iterated now.
    void initValidation() {
        resetValidation();
        addValidation(this);
    }
    // Admits everything.
    void resetValidation() { m_validation.clear(); }

    psString validString() const override {
        psStringList names;
        for (const T& value : m_validation) {
            names.append(this->valueToString(value));
        }
        return psJoined(names, "|");
    }
    T validItem(const psString& text) override {
        const T value = psIterator_NSC<T>::validItem(text);
        if (!isAdmitted(value)) {
            this->reject(text);
        }
        return value;
    }

private:
    bool isAdmitted(const T& value) const {
        for (const T& admitted : m_validation) {
            if (admitted == value) {
                return true;
            }
        }
        return m_validation.empty();
    }

    psList<T> m_validation;
};

// An iterator over enumeration values that are typed and printed by name.
template <class T> class psMapIterator : public psEnumIterator_NCS<T> {
public:
    using psEnumIterator_NCS<T>::psEnumIterator_NCS;

    void addMap(const psString& name, T value) { m_map.add(name, value); }
    void resetMap() { m_map.clear(); }

    psString valueToString(T value) const override { return m_map.nameOf(value); }
    T stringToValue(const psString& text) const override { return m_map.find(text); }
    bool isTypedAsNumber() const override { return false; }

private:
    psNameMap<T> m_map;
};

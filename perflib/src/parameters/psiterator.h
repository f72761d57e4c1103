#pragma once

#include <utility>

#include "psdefault.h"

// A parameter that iterates over a list of values, in their order. A default given to the
// constructor or to init() is the only value until others are added; without one the list, and
// the iteration, is empty.
template <class T> class psIterator_NSC : public psDefault_NSC<T>, public psList<T> {
public:
    psIterator_NSC() = default;
    explicit psIterator_NSC(const T& defaultValue, const psString& name = {},
                            const psString& promptName = {})
        : psDefault_NSC<T>(defaultValue, name, promptName) {
        listDefault(defaultValue);
    }

    // Begins a new definition: values that add() put in before are dropped.
    void init(const T& defaultValue, const psString& name, const psString& promptName = {}) {
        psDefault_NSC<T>::init(defaultValue, name, promptName);
        listDefault(defaultValue);
        this->reset();
    }

    void reset() override {
        psDefault_NSC<T>::reset();
        if (!this->empty()) {
            this->setValue(this->front());
        }
    }
    psString defaultString() const override {
        psStringList texts;
        for (const T& item : *this) {
            texts.append(this->valueToString(item));
        }
        return psJoined(texts, "; ");
    }
    bool nextValue() override {
        if (this->beginIteration()) {
            m_cursor = this->begin();
        } else if (m_cursor != this->end()) {
            ++m_cursor;
        }
        if (m_cursor == this->end()) {
            return this->setHasValue(false);
        }
        this->setValue(*m_cursor);
        return this->setHasValue(true);
    }
    // Values separated by ";".
    void translate(const psString& text) override {
        psStringList items;
        text.parse(items, ";");
        if (items.empty()) {
            throw psException("Empty iterator definition");
        }
        psList<T> values;
        for (const psString& item : items) {
            values.append(itemOf(item.trimmed()));
        }
        list() = std::move(values);
        m_defaultListed = false;
        this->reset();
    }

    std::function<void()> keepDefinition() override {
        return [this, keptDefault = psDefault_NSC<T>::keepDefinition(), values = list(),
                listed = m_defaultListed] {
            list() = values;
            m_defaultListed = listed;
            keptDefault(); // also begins the iteration anew
        };
    }

    ~psIterator_NSC() override = default;
    virtual void add(T value) {
        if (m_defaultListed) {
            this->clear();
            m_defaultListed = false;
            this->resetIterator();
        }
        this->append(std::move(value));
    }

private:
    using psDefault_NSC<T>::setDefault; // would leave the list behind: see init()
    psList<T>& list() { return *this; }
    // An empty item between two separators is a mistake, not the default.
    T itemOf(const psString& text) {
        if (text.empty()) {
            this->reject(text);
        }
        return this->validItem(text);
    }
    void listDefault(const T& value) {
        this->clear();
        this->append(value);
        m_defaultListed = true;
    }

    typename psList<T>::iterator m_cursor;
    bool m_defaultListed = false;
};

template <class T> class psIterator : public psIterator_NSC<T> {
public:
    using psIterator_NSC<T>::psIterator_NSC;
};

extern template class psIterator_NSC<int>;
extern template class psIterator_NSC<bool>;
extern template class psIterator_NSC<psString>;

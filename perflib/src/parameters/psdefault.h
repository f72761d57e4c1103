#pragma once

#include <type_traits>

#include "psexcept.h"
#include "psnamemap.h"
#include "psparameter.h"
#include "psvalue.h"

// A parameter of one value. Its definition is the default: a text that replaces it stands until
// the next one, over any number of iterations.
template <class T> class psDefault_NSC : public psParameter {
public:
    psDefault_NSC() = default;
    explicit psDefault_NSC(const T& defaultValue, const psString& name = {},
                           const psString& promptName = {})
        : psParameter(name, promptName), m_default(defaultValue), m_value(defaultValue) {}

    void init(const T& defaultValue, const psString& name, const psString& promptName = {}) {
        setName(name, promptName);
        setDefault(defaultValue);
    }
    void setDefault(const T& value) {
        m_default = value;
        reset();
    }
    const T& defaultValue() const { return m_default; }
    // Sets the current value until the next reset().
    void setValue(const T& value) { m_value = value; }
    // From now on value is marked by text in the table wherever it occurs.
    void addDeprecated(const T& value, const psString& text) {
        m_deprecatedValues.append({value, text});
    }

    void reset() override {
        m_value = m_default;
        resetIterator();
    }
    psString valueString() const override { return valueToString(value()); }
    psString defaultString() const override { return valueToString(m_default); }
    void resetIterator() override {
        m_begun = false;
        psParameter::resetIterator();
    }
    bool nextValue() override { return setHasValue(beginIteration()); }

    void setDeprecatedFlag(bool on) override {
        psParameter::setDeprecatedFlag(on);
        if (!on) {
            return;
        }
        const psString current = valueString();
        for (const Deprecated& item : m_deprecatedValues) {
            if (valueToString(item.value) == current) {
                setDeprecated(item.text);
                return;
            }
        }
    }

    void translate(const psString& text) override { setDefault(validItem(text.trimmed())); }
    std::function<void()> keepDefinition() override {
        return [this, value = m_default] { setDefault(value); };
    }

    void addTo(psNamedValues& values) const override {
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
            if (isTypedAsNumber() && !name().empty()) {
                values.add(name(), value());
                return;
            }
        }
        psParameter::addTo(values);
    }

    virtual T value() const { return m_value; }
    virtual psString valueToString(T value) const {
        if constexpr (std::is_enum_v<T>) {
            return psText(static_cast<int>(value));
        } else {
            return psText(value);
        }
    }
    // A text that is no T sets its own flag. An empty number stands for the default.
    virtual T stringToValue(const psString& text) const {
        if constexpr (std::is_enum_v<T>) {
            int number = static_cast<int>(m_default);
            number << text;
            return static_cast<T>(number);
        } else if constexpr (std::is_same_v<T, psString>) {
            text.setBad(false);
            return text;
        } else {
            T value = m_default;
            value << text;
            return value;
        }
    }
    // The value of text; throws psException when it has none.
    virtual T validItem(const psString& text) {
        const T value = stringToValue(text);
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
            if (isTypedAsNumber() && !text.empty() && !psIsNumber(text, value)) {
                text.setBad(true);
            }
        }
        if (text.isBad()) {
            reject(text);
        }
        return value;
    }
    // Whether stringToValue() reads a number, of which it takes the beginning of a text: the rest
    // is then an error. False where the admitted values are typed as names.
    virtual bool isTypedAsNumber() const { return validString().empty(); }

protected:
    // True for the first call after resetIterator().
    bool beginIteration() {
        const bool first = !m_begun;
        m_begun = true;
        return first;
    }
    [[noreturn]] void reject(const psString& text) const {
        throw psException("Invalid value of " + name() + " = " + text);
    }

private:
    struct Deprecated {
        T value;
        psString text;
    };
    T m_default{};
    T m_value{};
    psList<Deprecated> m_deprecatedValues;
    bool m_begun = false;
};

template <class T> class psDefault : public psDefault_NSC<T> {
public:
    using psDefault_NSC<T>::psDefault_NSC;
};

// One value chosen by name.
template <class T> class psMapDefault : public psDefault_NSC<T> {
public:
    using psDefault_NSC<T>::psDefault_NSC;

    void addMap(const psString& name, const T& value) { m_map.add(name, value); }
    void resetMap() { m_map.clear(); }

    psString validString() const override { return psJoined(m_map.names(), "|"); }
    psString valueToString(T value) const override { return m_map.nameOf(value); }
    T stringToValue(const psString& text) const override { return m_map.find(text); }
    bool isTypedAsNumber() const override { return false; }

private:
    psNameMap<T> m_map;
};

extern template class psDefault_NSC<int>;
extern template class psDefault_NSC<bool>;
extern template class psDefault_NSC<psString>;
extern template class psMapDefault<int>;
extern template class psMapDefault<bool>;

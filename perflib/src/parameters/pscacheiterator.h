#pragma once

#include <ntkdefs.h>

#include "psiterator.h"

class psObject;

// Sizes as texts: "640x480". A text that is no size of two numbers sets its own flag; an empty one
// leaves the size unchanged.
psString& operator<<(psString& s, const NtkiSize& size);
void operator<<(NtkiSize& size, const psString& s);

// In-cache and out-of-cache measuring. Wraps the parameter that decides how much data a test
// works on, and takes its place among the test's parameters: its own values are the two modes,
// and in each the wrapped parameter starts at its first value and is scaled until the memory that
// the test allocated for it fits the mode. In texts and tables only the wrapped parameter shows.
//
// The wrapped parameter and the object stay their owner's.
class psCacheIterator : public psIterator<int> {
public:
    enum Mode { PS_IN_CACHE = 0, PS_OUT_OF_CACHE = 1 };
    // A test's own way of changing the parameter so that the data go from current towards target
    // bytes; fine: by the smallest step. False: it cannot be changed that far.
    using Setter = bool (*)(psParameter* parm, int current, int target, bool fine);

    // object: whose size counts; null: all blocks. setter: null for setNewValueToParm.
    psCacheIterator(psParameter& wrapped, psObject* object, Setter setter);

    psParameter* wrapped() const { return m_wrapped; }

    psString valueString() const override { return m_wrapped->valueString(); }
    psString defaultString() const override { return m_wrapped->defaultString(); }
    psString validString() const override { return m_wrapped->validString(); }
    psString description() const override { return m_wrapped->description(); }
    psString prompt() const override { return m_wrapped->prompt(); }
    bool nextValue() override;
    bool isDeprecatedParm() override { return m_wrapped->isDeprecatedParm(); }
    bool isDeprecatedValue() override { return m_wrapped->isDeprecatedValue(); }
    void setDeprecatedFlag(bool on) override { m_wrapped->setDeprecatedFlag(on); }
    void toOStream(psOStream& out) const override { m_wrapped->toOStream(out); }
    int colmIndex() const override { return m_wrapped->colmIndex(); }
    void toCStream(psCStream& table) const override { m_wrapped->toCStream(table); }
    void nameToCStream(psCStream& table) const override { m_wrapped->nameToCStream(table); }
    bool fromIStream(psIStream& in) override { return m_wrapped->fromIStream(in); }
    void translate(const psString& text) override { m_wrapped->translate(text); }
    std::function<void()> keepDefinition() override { return m_wrapped->keepDefinition(); }
    void addTo(psNamedValues& values) const override; // the mode, as "Cache", then the parameter

    // After a validation that failed: changes the wrapped parameter, so that the same combination
    // may be tried again. False: given up.
    virtual bool repeatValue();
    // The scaling where the test has no way of its own; as a Setter.
    virtual bool setNewValueToParm(int current, int target, bool fine);

    // Whether the memory allocated now fits the mode; asked when the data of a combination are
    // there. What did not fit is reported.
    bool validateSize();
    int highSize() const; // bytes that the whole data may have
    int lowSize() const;  // bytes that the object must have
    int getObjectSize() const;
    static int getTotalSize();
    static int cacheSize();      // bytes of the largest cache; 0: not known
    psString getComment() const; // the mode
    // Repeats what did not fit for an output level that did not show it when it happened.
    void outputInfo() const;

private:
    bool isInCache() const { return value() == PS_IN_CACHE; }
    void collectTries(bool tooSmall, bool tooLarge);
    bool lowerFactor();

    static constexpr int givenUp = 12; // repetitions, more than are admitted

    psParameter* m_wrapped;
    psObject* m_object;
    int m_repeats = 0;
    int m_objectBytes = 0; // of the last validation, as the next
    int m_totalBytes = 0;
    bool m_wasTooSmall = false;
    double m_factor = 0.1; // the smallest data in the cache, as a part of it
    psString m_tries;
    Setter m_setter;
};

// Around a length.
class psCacheIteratorInt : public psCacheIterator {
public:
    explicit psCacheIteratorInt(psIterator<int>& length, psObject* object = nullptr,
                                Setter setter = nullptr)
        : psCacheIterator(length, object, setter), m_length(length) {}
    bool setNewValueToParm(int current, int target, bool fine) override;
    // False (value unchanged) when there is no such positive int.
    static bool updateValue(int& value, int current, int target, bool fine);

private:
    psIterator<int>& m_length;
};

// Around a size of width and height.
class psCacheIteratorSize : public psCacheIterator {
public:
    explicit psCacheIteratorSize(psIterator<NtkiSize>& size, psObject* object = nullptr,
                                 Setter setter = nullptr)
        : psCacheIterator(size, object, setter), m_size(size) {}
    bool setNewValueToParm(int current, int target, bool fine) override;
    // False (size unchanged) when a side would vanish or overflow.
    static bool updateValue(NtkiSize& size, int current, int target, bool fine);

private:
    psIterator<NtkiSize>& m_size;
};

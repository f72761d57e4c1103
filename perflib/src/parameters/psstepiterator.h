#pragma once

#include "psiterator.h"

enum StepOprtn : char {
    PS_STEP_ADD = '+',
    PS_STEP_SUB = '-',
    PS_STEP_MUL = '*',
    PS_STEP_LIST = '?', // no progression: the values of the list
};

// first, first (operation) step, ... while it has not passed last. A step of 0, where the
// direction rule admits it, repeats first for ever.
struct psProgression {
    int first = 0;
    int last = 0;
    int step = 0;
    StepOprtn operation = PS_STEP_LIST;

    bool descending() const { return first > last; }
    // Throws psException when the operation does not lead from first towards last.
    void validate() const;
    // In 64 bits, so that stepping past the largest int ends the iteration like any other end.
    long long after(int value) const;
    bool contains(long long value) const;
};

template <class T> class psStepIterator;

// A progression, or a list when the text that defines it is none: "16;1024;*2" is a progression,
// "1;2;3" a list. Without a definition it has no values.
template <> class psStepIterator<int> : public psIterator<int> {
public:
    using psIterator<int>::psIterator;

    // A list of this value, until others are added.
    void init(int defaultValue, const psString& name, const psString& promptName = {});
    // Throws psException as psProgression::validate() does; nothing is changed then.
    void init(int first, int last, int step, StepOprtn operation, const psString& name);

    void reset() override;
    psString defaultString() const override;
    psString description() const override;
    psString prompt() const override;
    bool nextValue() override;
    void translate(const psString& text) override;
    std::function<void()> keepDefinition() override;

    int first() const { return m_progression.first; }
    int last() const { return m_progression.last; }
    int step() const { return m_progression.step; }
    StepOprtn operation() const { return m_progression.operation; }
    bool isProgression() const { return operation() != PS_STEP_LIST; }

private:
    void define(const psProgression& progression);

    psProgression m_progression;
};

#include "psstepiterator.h"

namespace {

[[noreturn]] void rejectConflict() {
    throw psException(psString("Conflict between iterator limits and operation"));
}

bool isOperation(char c) {
    return c == PS_STEP_ADD || c == PS_STEP_SUB || c == PS_STEP_MUL;
}

// Rejects what is no whole number, also an empty field: a missing step would become 0 and the
// iteration endless.
int fieldValue(const psString& field, const char* what) {
    int value = 0;
    value << field;
    if (!psIsNumber(field, value)) {
        throw psException(psString("Invalid ") + what + " = " + field);
    }
    return value;
}

// The three fields of a progression; false when the text is a list.
bool progressionFields(const psString& text, psString (&fields)[3]) {
    psStringList words;
    text.parse(words, "; ");
    if (words.count() != 3 || !isOperation(words.back()[0])) {
        return false;
    }
    psString* field = fields;
    for (const psString& word : words) {
        *field++ = word;
    }
    return true;
}

} // namespace

void psProgression::validate() const {
    bool fits = false;
    switch (operation) {
    case PS_STEP_ADD: fits = (step >= 1) != descending(); break;
    case PS_STEP_SUB: fits = (step >= 1) == descending(); break;
    case PS_STEP_MUL: fits = step >= 2 && (descending() ? first < 0 : first > 0); break;
    case PS_STEP_LIST: break;
    }
    if (!fits) {
        rejectConflict();
    }
}

long long psProgression::after(int value) const {
    const long long from = value;
    switch (operation) {
    case PS_STEP_SUB: return from - step;
    case PS_STEP_MUL: return from * step;
    default: return from + step;
    }
}

bool psProgression::contains(long long value) const {
    return descending() ? value >= last : value <= last;
}

void psStepIterator<int>::init(int defaultValue, const psString& name, const psString& promptName) {
    m_progression = {};
    psIterator<int>::init(defaultValue, name, promptName);
}

void psStepIterator<int>::init(int first, int last, int step, StepOprtn operation,
                               const psString& name) {
    const psProgression progression{first, last, step, operation};
    progression.validate();
    setName(name);
    define(progression);
}

void psStepIterator<int>::define(const psProgression& progression) {
    m_progression = progression;
    reset();
}

void psStepIterator<int>::reset() {
    psIterator<int>::reset();
    if (isProgression()) {
        setValue(first());
    }
}

psString psStepIterator<int>::defaultString() const {
    if (!isProgression()) {
        return psIterator<int>::defaultString();
    }
    psString text;
    text << first() << "; " << last() << "; " << char(operation()) << step();
    return text;
}

psString psStepIterator<int>::description() const {
    if (!isProgression()) {
        return psIterator<int>::description();
    }
    psString text;
    text << "for (" << name() << " = " << first() << "; " << name()
         << (m_progression.descending() ? " >= " : " <= ") << last() << "; " << name() << " "
         << char(operation()) << "= " << step() << ")";
    return text;
}

psString psStepIterator<int>::prompt() const {
    return "for " + promptName();
}

bool psStepIterator<int>::nextValue() {
    if (!isProgression()) {
        return psIterator<int>::nextValue();
    }
    const long long next = beginIteration() ? first() : m_progression.after(value());
    if (!m_progression.contains(next)) {
        return setHasValue(false);
    }
    setValue(static_cast<int>(next));
    return setHasValue(true);
}

void psStepIterator<int>::translate(const psString& text) {
    psString fields[3];
    if (!progressionFields(text, fields)) {
        psIterator<int>::translate(text);
        m_progression.operation = PS_STEP_LIST;
        reset();
        return;
    }
    psProgression progression;
    progression.first = fieldValue(fields[0], "first value");
    progression.last = fieldValue(fields[1], "last value");
    progression.operation = static_cast<StepOprtn>(fields[2][0]);
    progression.step = fieldValue(fields[2].substr(1), "step");
    progression.validate();
    define(progression);
}

std::function<void()> psStepIterator<int>::keepDefinition() {
    return [this, keptList = psIterator<int>::keepDefinition(), progression = m_progression] {
        m_progression = progression;
        keptList();
    };
}

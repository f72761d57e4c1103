#pragma once

#include <functional>

#include "psstring.h"

class psOStream;
class psCStream;
class psIStream;
class psNamedValues;

// Root of the named, typed, iterable parameters of the tests. A parameter has a definition (one
// value, a list or a progression) that a test author gives in code and a user replaces by text,
// and an iteration over it: firstValue(), then nextValue() until it returns false.
//
// Parameters are file-level objects or members, used from static initialisers of any file and
// never deleted through this class, hence no virtual destructor here.
class psParameter {
public:
    psParameter(const psParameter&) = delete;
    psParameter& operator=(const psParameter&) = delete;

    // The order of the virtual operations is kept by derived harnesses: add new ones at the end
    // of a class.

    // Starts the iteration anew and puts the current value back to what the definition says.
    virtual void reset();
    // The current value.
    virtual psString valueString() const = 0;
    // The whole definition, in a form that translate() accepts.
    virtual psString defaultString() const = 0;
    // The admitted names joined by "|"; empty when anything convertible is admitted.
    virtual psString validString() const { return {}; }
    virtual psString description() const;
    // The question that a person is asked, without the default.
    virtual psString prompt() const;
    // The next nextValue() gives the first value again.
    virtual void resetIterator() { m_hasValue = false; }
    // reset() and the first value; false when there is none.
    virtual bool firstValue();
    // Steps on; false, with the last value kept, after the last one.
    virtual bool nextValue() = 0;
    // Whether setDeprecatedFlag(true) found the current value among the deprecated ones.
    virtual bool isDeprecatedParm() { return m_deprecated; }
    virtual bool isDeprecatedValue() { return false; }
    virtual void setDeprecatedFlag(bool on);
    // name "=" value and a blank; nothing for a parameter without a name.
    virtual void toOStream(psOStream& out) const;
    // The performance-table column of this parameter; negative: the next free one.
    virtual int colmIndex() const { return -1; }
    virtual void toCStream(psCStream& table) const;
    virtual void nameToCStream(psCStream& table) const;
    // Takes a new definition from the input, when the parameter is in use and the input has one;
    // true when it was taken. A rejected one is reported and the earlier definition stays; on the
    // console the question is then asked again.
    virtual bool fromIStream(psIStream& in);
    // Replaces the definition. Throws psException when the text is no definition; the parameter
    // then keeps its earlier one.
    virtual void translate(const psString& text) = 0;
    // A function that puts the definition back to what it is now. (Not by way of its text, which
    // is shorter than some numbers and has no form for an empty list.)
    virtual std::function<void()> keepDefinition() = 0;
    // Adds the current value under the parameter's name, with its own type: a number where the
    // parameter is one. Nothing for a parameter without a name.
    virtual void addTo(psNamedValues& values) const;

    const psString& name() const { return m_name; }
    const psString& promptName() const { return m_promptName; }
    // An empty prompt name: the name itself is shown.
    void setName(const psString& name, const psString& promptName = {});

    // True while the iteration stands on a value.
    bool hasValue() const { return m_hasValue; }
    // Only parameters in use are read from the input. True at first.
    bool isInUse() const { return m_inUse; }
    void setInUse(bool inUse) { m_inUse = inUse; }
    // Whether the table cell stands in double quotes.
    bool isQuoted() const { return (m_outputFlags & quotedFlag) != 0; }
    void setQuoted(bool quoted);

protected:
    psParameter() = default;
    explicit psParameter(const psString& name, const psString& promptName = {});
    ~psParameter() = default;

    bool setHasValue(bool hasValue) { return m_hasValue = hasValue; }
    void setDeprecated(const psString& text);

private:
    static constexpr int quotedFlag = 2;
    void putCell(psCStream& table, const psString& text) const;
    void reportRejected(const char* message, const psString& text) const;

    psString m_name;
    psString m_promptName;
    bool m_hasValue = false;
    bool m_inUse = true;
    int m_outputFlags = 0;
    bool m_deprecated = false;
    psString m_deprecatedText;
    bool m_rejected = false;
    psString m_rejectedText; // valid when m_rejected
};

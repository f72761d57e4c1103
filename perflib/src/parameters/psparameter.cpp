#include "psparameter.h"

#include "pscstream.h"
#include "psexcept.h"
#include "psistream.h"
#include "psostream.h"
#include "psremarks.h"
#include "psvalue.h"

psParameter::psParameter(const psString& name, const psString& promptName) {
    setName(name, promptName);
}

void psParameter::reset() {
    resetIterator();
}

psString psParameter::description() const {
    return m_name + " = " + defaultString();
}

psString psParameter::prompt() const {
    const psString valid = validString();
    return valid.empty() ? m_promptName : m_promptName + " {" + valid + "}";
}

bool psParameter::firstValue() {
    reset();
    return nextValue();
}

void psParameter::setDeprecatedFlag(bool) {
    m_deprecated = false;
}

void psParameter::setDeprecated(const psString& text) {
    m_deprecated = true;
    m_deprecatedText = text;
}

void psParameter::setName(const psString& name, const psString& promptName) {
    m_name = name;
    m_promptName = promptName.empty() ? name : promptName;
}

void psParameter::setQuoted(bool quoted) {
    m_outputFlags = quoted ? m_outputFlags | quotedFlag : m_outputFlags & ~quotedFlag;
}

void psParameter::toOStream(psOStream& out) const {
    if (!m_name.empty()) {
        out << m_name << "=" << valueString() << " ";
    }
}

void psParameter::toCStream(psCStream& table) const {
    psString text = valueString();
    if (!text.empty()) {
        if (m_deprecated) {
            text = m_deprecatedText;
        } else if (isQuoted()) {
            text = " \"" + text + "\"";
        }
    }
    putCell(table, text);
}

void psParameter::addTo(psNamedValues& values) const {
    if (!m_name.empty()) {
        values.add(m_name, valueString());
    }
}

void psParameter::nameToCStream(psCStream& table) const {
    putCell(table, m_name);
}

void psParameter::putCell(psCStream& table, const psString& text) const {
    const int column = colmIndex();
    if (column < 0) {
        table.setNextColm(text);
    } else {
        table.setColm(column, text);
    }
}

bool psParameter::fromIStream(psIStream& in) {
    if (!m_inUse) {
        return false;
    }
    // Only a program that never reads the messages would give more wrong answers than this.
    constexpr int maxAnswers = 10;
    for (int answer = 1; answer <= maxAnswers; ++answer) {
        psString text;
        const psIStream::Source source = in.read(m_name, prompt(), defaultString(), text);
        // An empty definition that was written to a settings file comes back as an empty text.
        if (source == psIStream::PS_FROM_NOTHING || (text.empty() && defaultString().empty())) {
            return false;
        }
        try {
            translate(text);
            return true;
        } catch (const psException& rejected) {
            // Shared parameters are read for the session and again for each test: one message is
            // enough.
            if (source == psIStream::PS_FROM_CONSOLE || !m_rejected || !(text == m_rejectedText)) {
                reportRejected(rejected.msg(), text);
            }
            m_rejected = true;
            m_rejectedText = text;
        }
        if (source != psIStream::PS_FROM_CONSOLE) {
            return false;
        }
    }
    g_ostrm << PS_ERR << "-- " << maxAnswers << " answers were rejected; keeping " << m_name
            << " = " << defaultString() << "\n"
            << PS_END;
    return false;
}

void psParameter::reportRejected(const char* message, const psString& text) const {
    g_remarks.add(m_name + ": \"" + text + "\" was not taken, it was " + defaultString());
    g_ostrm << PS_ERR << message << " (" << m_name << " = " << text << " is rejected; keeping "
            << defaultString() << ")\n"
            << PS_END;
}

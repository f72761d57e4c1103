#pragma once

#include "psstring.h"

// The floating-point words around a measured run: flags are cleared before it and read back after
// it, so that a primitive which raises more than inexact is noticed. "SSX" is this program's word
// for the SIMD unit.

// The x87 unit. Stateless; the constructor applies the defaults.
class ts87Base {
public:
    // The defaults: to nearest, 53 bits, everything masked but zero-divide.
    static unsigned Rounding;
    static unsigned Precision;
    static unsigned Exception;
    static constexpr unsigned defaultMask = 0xF3F; // exception masks, precision, rounding
    static constexpr unsigned exceptionMasks = 0x3F;

    ts87Base();

    void setDefault() const;
    // Clears the flags, then sets the bits of the control word that mask selects. In this order:
    // unmasking an exception whose flag is up would trap at the next x87 instruction.
    void set(unsigned controlWord, unsigned mask) const;
    unsigned getCW() const;
    unsigned getSW() const;
    void clear() const;
    void enableExceptions() const;
    void disableExceptions() const;
    // Masks inexact and every exception whose flag is up now; the others trap from now on.
    void disableInexactException() const;

    // The flags of a status word as words with a blank behind each, "Ok" for none. A "?" before a
    // word marks a flag that makes the status bad.
    static psString strSW(unsigned statusWord);
    // Rounding, precision and the masked exceptions of a control word, a blank behind each.
    static psString strCW(unsigned controlWord);
};

// The SIMD control/status register, which holds flags, masks and modes together. On a processor
// without the extension nothing is done and everything reads as 0.
class tsSSXBase {
public:
    // The defaults: to nearest, everything masked, results below the normal range become zero.
    static unsigned Rounding;
    static unsigned Exception;
    static unsigned FlushZero;
    // Everything except denormals-are-zero, which the program entry decides for the whole run.
    static constexpr unsigned defaultMask = 0xFFBF;
    static constexpr unsigned exceptionMasks = 0x1F80;

    tsSSXBase();
    explicit tsSSXBase(bool hasExtension);

    bool hasExtension() const { return m_hasExtension; }
    void setDefault() const;
    void set(unsigned word, unsigned mask) const; // clears the flags first, as ts87Base::set
    unsigned get() const;
    void clear() const;
    void enableExceptions() const;
    void disableExceptions() const;
    void disableInexactException() const; // the other masks stay
    // Leaves the register safe for code that runs after the harness: flags clear, all masked.
    void destroy() const;

    // As the texts of ts87Base; "cpu has not SSX extension" without it.
    psString strExceptionState(unsigned word) const;
    psString strCW(unsigned word) const;

private:
    bool m_hasExtension;
};

// The x87 watcher of the running test: collects the words of all its measured runs.
class ps87 {
public:
    // Made at the first call; the hardware gets the defaults then.
    static ps87& instance();

    void init();                                // nothing collected, flags down, defaults applied
    void clear();                               // nothing collected, flags down
    void start();                               // before a measured run
    void stop();                                // after it: adds the words to those collected
    void mask() { m_base.disableExceptions(); } // until the next init()
    bool badStatus() const;
    psString strSW() const { return ts87Base::strSW(m_sw); }
    psString strCW() const { return ts87Base::strCW(m_cw); }
    unsigned sw() const { return m_sw; }
    unsigned cw() const { return m_cw; }
    // The exception masks that the next init() applies.
    static void setExceptionValue(unsigned value) { ts87Base::Exception = value; }

private:
    ps87() = default;
    ts87Base m_base;
    unsigned m_cw = 0;
    unsigned m_sw = 0;
};

// The SIMD watcher, as ps87.
class psSSX {
public:
    static psSSX& instance();

    void init();
    void clear();
    void start();
    void stop();
    void mask() { m_base.disableExceptions(); }
    bool badStatus() const;
    psString strExceptionState() const { return m_base.strExceptionState(m_word); }
    psString strCW() const { return m_base.strCW(m_word); }
    unsigned word() const { return m_word; }
    bool hasExtension() const { return m_base.hasExtension(); }
    const tsSSXBase& unit() const { return m_base; } // for the texts of words recorded before
    static void setExceptionValue(unsigned value) { tsSSXBase::Exception = value; }

private:
    psSSX() = default;
    tsSSXBase m_base;
    unsigned m_word = 0;
};

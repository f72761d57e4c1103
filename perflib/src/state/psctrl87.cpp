#include "psctrl87.h"

#include <ntkcore.h>

namespace {

constexpr int numExceptions = 6;
constexpr unsigned allFlags = 0x3F;
constexpr unsigned flagsButInexact = 0x1F;
constexpr unsigned inexactMask87 = 0x20;
constexpr unsigned inexactMaskSSX = 0x1000;
constexpr unsigned flushToZeroBit = 0x8000;

const char* const statusWords[numExceptions] = {"?Invalid ",  "?Denormal ",  "?Zerodivide ",
                                                "?Overflow ", "?Underflow ", "_Inexact "};
const char* const maskWords[numExceptions] = {"Invalid ",  "Denormal ",  "Zerodivide ",
                                              "Overflow ", "Underflow ", "Inexact "};
const char* const roundingWords[4] = {"Near ", "Down ", "Up ", "Zero "};
const char* const precisionWords[4] = {"24 ", "", "53 ", "64 "}; // 1 is reserved by the processor
const char* const noExtensionText = "cpu has not SSX extension";

// The words of the bits that are set among the lowest six.
psString namesOfBits(unsigned bits, const char* const (&words)[numExceptions]) {
    psString text;
    for (int i = 0; i < numExceptions; ++i) {
        if (bits >> i & 1) {
            text << words[i];
        }
    }
    return text;
}

psString statusText(unsigned flags) {
    const psString text = namesOfBits(flags, statusWords);
    return text.empty() ? "Ok" : text;
}

bool isBad(const psString& statusText) {
    return statusText.contains("?");
}

bool processorHasSSX() {
    Ntk64u features = 0;
    return ntkGetCpuFeatures(&features, nullptr) >= 0 && (features & NTK_CPU_SSE) != 0;
}

} // namespace

constinit unsigned ts87Base::Rounding = 0;
constinit unsigned ts87Base::Precision = 0x200;
constinit unsigned ts87Base::Exception = 0x3B;

ts87Base::ts87Base() {
    setDefault();
}

void ts87Base::setDefault() const {
    set(Exception | Precision | Rounding, defaultMask);
}

void ts87Base::set(unsigned controlWord, unsigned mask) const {
    clear();
    ntkFpuSsx4TS(ntkFpuSetControl, controlWord, mask);
}

unsigned ts87Base::getCW() const {
    return ntkFpuSsx4TS(ntkFpuGetControl, 0, 0);
}

unsigned ts87Base::getSW() const {
    return ntkFpuSsx4TS(ntkFpuGetStatus, 0, 0);
}

void ts87Base::clear() const {
    ntkFpuSsx4TS(ntkFpuClear, 0, 0);
}

void ts87Base::enableExceptions() const {
    set(0, exceptionMasks);
}

void ts87Base::disableExceptions() const {
    set(exceptionMasks, exceptionMasks);
}

void ts87Base::disableInexactException() const {
    set((getSW() & flagsButInexact) + inexactMask87, exceptionMasks);
}

psString ts87Base::strSW(unsigned statusWord) {
    return statusText(statusWord);
}

psString ts87Base::strCW(unsigned controlWord) {
    psString text = roundingWords[controlWord >> 10 & 3];
    text << precisionWords[controlWord >> 8 & 3] << namesOfBits(controlWord, maskWords);
    return text;
}

constinit unsigned tsSSXBase::Rounding = 0;
constinit unsigned tsSSXBase::Exception = 0x1F80;
constinit unsigned tsSSXBase::FlushZero = 0x8000;

tsSSXBase::tsSSXBase() : tsSSXBase(processorHasSSX()) {}

tsSSXBase::tsSSXBase(bool hasExtension) : m_hasExtension(hasExtension) {
    setDefault();
}

void tsSSXBase::setDefault() const {
    set(Rounding | Exception | FlushZero, defaultMask);
}

void tsSSXBase::set(unsigned word, unsigned mask) const {
    if (m_hasExtension) {
        clear();
        ntkFpuSsx4TS(ntkSsxSet, word, mask);
    }
}

unsigned tsSSXBase::get() const {
    return m_hasExtension ? ntkFpuSsx4TS(ntkSsxGet, 0, 0) : 0;
}

void tsSSXBase::clear() const {
    if (m_hasExtension) {
        ntkFpuSsx4TS(ntkSsxClear, 0, allFlags);
    }
}

void tsSSXBase::enableExceptions() const {
    set(0, exceptionMasks);
}

void tsSSXBase::disableExceptions() const {
    set(exceptionMasks, exceptionMasks);
}

void tsSSXBase::disableInexactException() const {
    set((get() & exceptionMasks & ~inexactMaskSSX) + inexactMaskSSX, exceptionMasks);
}

void tsSSXBase::destroy() const {
    disableExceptions();
}

psString tsSSXBase::strExceptionState(unsigned word) const {
    return m_hasExtension ? statusText(word) : noExtensionText;
}

psString tsSSXBase::strCW(unsigned word) const {
    if (!m_hasExtension) {
        return noExtensionText;
    }
    psString text = roundingWords[word >> 13 & 3];
    text << namesOfBits(word >> 7, maskWords)
         << (word & flushToZeroBit ? "FlushToZero " : "NoFlushToZero ");
    return text;
}

ps87& ps87::instance() {
    static ps87 watcher;
    return watcher;
}

void ps87::init() {
    m_cw = m_sw = 0;
    m_base.setDefault();
}

void ps87::clear() {
    m_cw = m_sw = 0;
    m_base.clear();
}

void ps87::start() {
    m_base.clear();
}

void ps87::stop() {
    m_sw |= m_base.getSW();
    m_cw |= m_base.getCW();
}

bool ps87::badStatus() const {
    return isBad(strSW());
}

psSSX& psSSX::instance() {
    static psSSX watcher;
    return watcher;
}

void psSSX::init() {
    m_word = 0;
    m_base.setDefault();
}

void psSSX::clear() {
    m_word = 0;
    m_base.clear();
}

void psSSX::start() {
    m_base.clear();
}

void psSSX::stop() {
    m_word |= m_base.get();
}

bool psSSX::badStatus() const {
    return isBad(strExceptionState());
}

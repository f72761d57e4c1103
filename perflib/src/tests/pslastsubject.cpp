#include "pslastsubject.h"

#include <cstdlib>
#include <iterator>

#include "pslastwords.h"
#include "psostream.h"
#include "psrunwatch.h"
#include "pssignal.h"

namespace {

psString g_preparation; // empty: none

void nameFunction(const psString& function) {
    g_preparation = "";
    tsSignal::setSubject(function.c_str());
}

// Whoever watches from outside says it himself.
void sayAtExit() {
    if (g_preparation.empty() || g_runWatch) {
        return;
    }
    g_ostrm.flush();
    const char* const parts[] = {"--NTK. Exception: exit in ", g_preparation.c_str(), "\n"};
    psSayLastWords(parts, std::size(parts));
}

} // namespace

psLastSubject::psLastSubject(const psString& function) {
    nameFunction(function);
}

psLastSubject::~psLastSubject() {
    g_preparation = "";
    tsSignal::setSubject("between tests");
}

void psLastSubject::prepares(const psString& function, const psString& combination) {
    [[maybe_unused]] static const int registered = std::atexit(sayAtExit);
    g_preparation = function + ", prepared with " + combination;
    tsSignal::setSubject(g_preparation.c_str());
}

void psLastSubject::hasPrepared(const psString& function) {
    nameFunction(function);
}

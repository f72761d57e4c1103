// Values, lists and progressions of parameters as texts: a text is taken or refused, a refused one
// changes nothing, what is printed reads back as the same.
#include <climits>
#include <string>

#include "kxdefault.h"
#include "pscacheiterator.h"
#include "psenum.h"
#include "psstepiterator.h"
#include "text.h"

namespace {

constexpr int mostValues = 300; // a progression may have 2^31, or no end

std::vector<std::string> valuesOf(psParameter& parameter) {
    std::vector<std::string> values;
    for (bool has = parameter.firstValue(); has && values.size() < mostValues;
         has = parameter.nextValue()) {
        FUZZ_CHECK(parameter.hasValue());
        values.emplace_back(parameter.valueString().c_str());
    }
    parameter.reset();
    return values;
}

bool isTaken(psParameter& parameter, const psString& text) try {
    parameter.translate(text);
    return true;
} catch (const psException& refusal) {
    FUZZ_CHECK(refusal.msg()[0] != '\0');
    return false;
}

// hasExactTexts: a value's text tells all of it.
void check(psParameter& parameter, const psString& text, bool hasExactTexts = true) {
    const std::string definition = parameter.defaultString().c_str();
    const std::vector<std::string> before = valuesOf(parameter);
    const auto restore = parameter.keepDefinition();
    if (!isTaken(parameter, text)) {
        FUZZ_CHECK(definition == parameter.defaultString().c_str());
        FUZZ_CHECK(before == valuesOf(parameter));
        return;
    }
    const std::vector<std::string> taken = valuesOf(parameter);
    FUZZ_CHECK(!taken.empty());
    FUZZ_CHECK(taken == valuesOf(parameter)); // again
    const psString printed = parameter.defaultString();
    if (hasExactTexts) {
        FUZZ_CHECK(isTaken(parameter, printed));
        FUZZ_CHECK(taken == valuesOf(parameter));
        FUZZ_CHECK(printed == parameter.defaultString());
    }
    restore();
    FUZZ_CHECK(definition == parameter.defaultString().c_str());
    FUZZ_CHECK(before == valuesOf(parameter));
}

// first, first (operation) step, ... within the limits, each an int.
void checkProgression(psStepIterator<int>& steps, const psString& text) {
    if (!isTaken(steps, text) || !steps.isProgression()) {
        return;
    }
    long long expected = steps.first();
    for (const std::string& value : valuesOf(steps)) {
        FUZZ_CHECK(value == std::to_string(expected));
        FUZZ_CHECK(std::min(steps.first(), steps.last()) <= expected &&
                   expected <= std::max(steps.first(), steps.last()));
        switch (steps.operation()) {
        case PS_STEP_SUB: expected -= steps.step(); break;
        case PS_STEP_MUL: expected *= steps.step(); break;
        default: expected += steps.step(); break;
        }
    }
}

// A list prints its values and nothing else, so three of which the last is negative look like a
// progression, whose text ends in its operation and step.
bool looksLikeProgression(const psString& text) {
    psStepIterator<int> steps;
    steps.init(1, 100, 3, PS_STEP_ADD, "Steps");
    if (!isTaken(steps, text) || steps.isProgression()) {
        return false;
    }
    const std::vector<std::string> values = valuesOf(steps);
    return values.size() == 3 && values[2][0] == '-';
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const unsigned kind = in.below(9);
    const psString text = fuzz::textOf(in.rest());
    switch (kind) {
    case 0: {
        psDefault<int> value(5, "Value");
        check(value, text);
        break;
    }
    case 1: {
        psDefault<double> value(2.5, "Value");
        check(value, text, false); // three digits
        break;
    }
    case 2: {
        psIterator<int> list(16, "List");
        list.add(1);
        list.add(INT_MIN);
        check(list, text);
        break;
    }
    case 3: {
        psIterator<psString> list("default", "List");
        check(list, text);
        break;
    }
    case 4: {
        psIterator<bool> list(true, "List");
        check(list, text);
        break;
    }
    case 5: {
        psMapIterator<int> list(0, "List");
        for (const auto& [name, value] :
             {std::pair{"none", 0}, {"nothing", 7}, {"9", 9}, {"all", -1}}) {
            list.addMap(name, value);
            list.addValidation(value);
        }
        check(list, text);
        break;
    }
    case 6: {
        psIterator<NtkiSize> list({640, 480}, "List");
        check(list, text);
        break;
    }
    case 7: {
        kxScaleIterator scale;
        scale.init("ntksMul_16s_Sfs");
        check(scale, text);
        break;
    }
    default: {
        psStepIterator<int> steps;
        steps.init(1, 100, 3, PS_STEP_ADD, "Steps");
        check(steps, text, !looksLikeProgression(text));
        checkProgression(steps, text);
        break;
    }
    }
    return 0;
}

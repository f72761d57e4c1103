// Texts to numbers and back: what is a number by the standard library is one here and has that
// value, what is printed reads back.
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

#include "pscacheiterator.h"
#include "text.h"

namespace {

// Digits, or hexadecimal ones after "0x", behind blanks and a sign as strtoll takes them.
template <class Number> bool isWhole(std::string_view text, Number& value) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) {
        text.remove_prefix(2);
    } else {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
        if (text.starts_with("+") && !text.starts_with("+-")) {
            text.remove_prefix(1);
        }
    }
    if (isHexadecimal && text.starts_with("-")) {
        return false;
    }
    const char* const end = text.data() + text.size();
    const auto [at, fault] = std::from_chars(text.data(), end, value, isHexadecimal ? 16 : 10);
    return at == end && fault == std::errc();
}

template <class Number> void checkWhole(const psString& text) {
    Number expected = 0;
    Number value = 77;
    value << text;
    FUZZ_CHECK(!text.empty() || (value == 77 && !text.isBad()));
    const bool isNumber = psIsNumber(text, value);
    // A zero byte ends a C text.
    if (isWhole(std::string_view(text.c_str(), static_cast<size_t>(text.length())), expected)) {
        FUZZ_CHECK(isNumber && !text.isBad() && value == expected);
    } else {
        FUZZ_CHECK(!isNumber);
    }
}

template <class Number> void checkPrinted(Number value) {
    const psString text = psText(value);
    FUZZ_CHECK(std::string(text.c_str()) == std::to_string(value));
    Number back = 1;
    back << text;
    FUZZ_CHECK(back == value && !text.isBad() && psIsNumber(text, back));
    const psString hexadecimal = psFormat("0x%llx", static_cast<unsigned long long>(value));
    long long bits = 1;
    bits << hexadecimal;
    FUZZ_CHECK(bits == static_cast<long long>(value) && !hexadecimal.isBad());
}

void checkDouble(const psString& text) {
    const std::string plain(text.c_str(), static_cast<size_t>(text.length()));
    double value = 77;
    value << text;
    FUZZ_CHECK(!text.empty() || (value == 77 && !text.isBad()));
    char* end = nullptr;
    const double expected = std::strtod(plain.c_str(), &end);
    const bool isWholeText = !plain.empty() && end == plain.c_str() + plain.size();
    FUZZ_CHECK(isWholeText || !psIsNumber(text, value));
    if (isWholeText && std::isnormal(expected)) {
        FUZZ_CHECK(psIsNumber(text, value) && value == expected && !text.isBad());
    }
}

// Three digits: what they read back as prints the same.
void checkPrintedDouble(double value) {
    const psString text = psText(value);
    double back = 0;
    back << text;
    FUZZ_CHECK(!text.isBad());
    FUZZ_CHECK(psText(back) == text || !std::isnormal(back));
    FUZZ_CHECK(!std::isnormal(back) || std::abs(back - value) <= std::abs(value) * 0.00501);
    float single = 0;
    single << psText(static_cast<float>(back));
    FUZZ_CHECK(std::isnan(single) == std::isnan(static_cast<float>(back)));
}

void checkBool(const psString& text) {
    bool value = false;
    value << text;
    FUZZ_CHECK(!text.isBad() || !value);
    bool back = !value;
    back << psText(value);
    FUZZ_CHECK(back == value);
}

void checkSize(int width, int height, const psString& text) {
    NtkiSize back{1, 1};
    const psString printed = psText(NtkiSize{width, height});
    back << printed;
    FUZZ_CHECK(back.width == width && back.height == height && !printed.isBad());
    NtkiSize read{7, 8};
    read << text;
    if (text.empty()) {
        FUZZ_CHECK(read.width == 7 && read.height == 8 && !text.isBad());
    }
}

// A flag of each bit, and names of which some begin alike.
void checkKeywords(unsigned bits, const psString& text) {
    const int values[] = {1, 2, 4, 8};
    const psString names[] = {"PS_ONE", "PS_ONLY", "PS_TWO", "three"};
    const int flags = static_cast<int>(bits % 16);
    const psString printed = flagString(flags, values, names, 4);
    FUZZ_CHECK(flags == 0 ||
               (flagValue(printed, values, names, 4, 3) == flags && !printed.isBad()));
    FUZZ_CHECK((flagValue(text, values, names, 4, 3) & ~15) == 0);
    const int value = enumValue(text, values, names, 4);
    FUZZ_CHECK(text.isBad() == (value == 0));
    FUZZ_CHECK(text.isBad() || fitString(text, enumString(value, values, names, 4)));
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    fuzz::Input in(data, size);
    const auto bits = in.number<unsigned long long>();
    const psString text = fuzz::textOf(in.rest());
    checkWhole<int>(text);
    checkWhole<long long>(text);
    checkPrinted(static_cast<int>(bits));
    checkPrinted(static_cast<long long>(bits));
    checkDouble(text);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    checkPrintedDouble(value);
    checkBool(text);
    checkSize(static_cast<int>(bits), static_cast<int>(bits >> 32), text);
    checkKeywords(static_cast<unsigned>(bits), text);
    FUZZ_CHECK(psFormat("%s", text.c_str()) == text.c_str());
    return 0;
}

#include "inflect.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace corpus {

namespace {

constexpr std::string_view kVowels = "aeiou";

bool isVowel(char letter) {
    return kVowels.find(letter) != std::string_view::npos;
}

bool endsIn(std::string_view word, std::string_view tail) {
    return word.size() >= tail.size() && word.substr(word.size() - tail.size()) == tail;
}

bool endsInConsonantY(std::string_view word) {
    return word.size() > 1 && word.back() == 'y' && !isVowel(word[word.size() - 2]);
}

// A short word such as "stop" or "beg" doubles its last letter before "ed" and "ing". Longer
// ones do so by their stress, which spelling does not show, so they are listed.
bool doublesLastLetter(std::string_view word) {
    static constexpr std::array<std::string_view, 13> kStressedAtTheEnd{
        "regret",  "begin", "forget", "admit", "permit",   "transmit", "refer",
        "control", "omit",  "occur",  "rebel", "overstep", "quarrel"};
    if (std::find(kStressedAtTheEnd.begin(), kStressedAtTheEnd.end(), word) !=
        kStressedAtTheEnd.end()) {
        return true;
    }
    if (word.size() < 3 || word.size() > 4 || (word.size() == 4 && isVowel(word[0]))) {
        return false;
    }
    const char last = word.back();
    const bool closed = !isVowel(last) && last != 'w' && last != 'x' && last != 'y';
    return closed && isVowel(word[word.size() - 2]) && !isVowel(word[word.size() - 3]);
}

std::string stemOf(std::string_view word, std::size_t cutLetters) {
    return std::string(word.substr(0, word.size() - cutLetters));
}

std::string withS(std::string_view word) {
    if (endsIn(word, "s") || endsIn(word, "x") || endsIn(word, "ch") || endsIn(word, "sh")) {
        return std::string(word) + "es";
    }
    return endsInConsonantY(word) ? stemOf(word, 1) + "ies" : std::string(word) + "s";
}

std::string withEd(std::string_view word) {
    if (endsIn(word, "e")) {
        return std::string(word) + "d";
    }
    if (endsInConsonantY(word)) {
        return stemOf(word, 1) + "ied";
    }
    return std::string(word) + (doublesLastLetter(word) ? std::string(1, word.back()) : "") + "ed";
}

std::string withIng(std::string_view word) {
    if (endsIn(word, "e") && !endsIn(word, "ee")) {
        return stemOf(word, 1) + "ing";
    }
    return std::string(word) + (doublesLastLetter(word) ? std::string(1, word.back()) : "") + "ing";
}

std::string withLy(std::string_view word) {
    if (endsIn(word, "le")) {
        return stemOf(word, 1) + "y";
    }
    if (endsIn(word, "ic")) {
        return std::string(word) + "ally";
    }
    return endsInConsonantY(word) ? stemOf(word, 1) + "ily" : std::string(word) + "ly";
}

std::string withEr(std::string_view word) {
    if (word.size() > 7) {
        return "more " + std::string(word);
    }
    if (endsIn(word, "e")) {
        return std::string(word) + "r";
    }
    if (endsInConsonantY(word)) {
        return stemOf(word, 1) + "ier";
    }
    return std::string(word) + (doublesLastLetter(word) ? std::string(1, word.back()) : "") + "er";
}

std::string capitalised(std::string_view word) {
    std::string text(word);
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') {
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    }
    return text;
}

std::string upperCase(std::string_view word) {
    std::string text(word);
    for (char& letter : text) {
        if (letter >= 'a' && letter <= 'z') {
            letter = static_cast<char>(letter - 'a' + 'A');
        }
    }
    return text;
}

std::string asIdentifier(std::string_view word) {
    std::string text(word);
    for (char& letter : text) {
        if (letter == ' ' || letter == '-') {
            letter = '_';
        }
    }
    return text;
}

// Field 0 is the word, 1 and 2 its irregular forms; empty when the list gives none.
std::string_view field(std::string_view word, int index) {
    for (; index > 0; --index) {
        const auto slash = word.find('/');
        if (slash == std::string_view::npos) {
            return {};
        }
        word.remove_prefix(slash + 1);
    }
    return word.substr(0, word.find('/'));
}

std::string pastOf(std::string_view word, int index) {
    for (; index > 0; --index) {
        if (const auto irregular = field(word, index); !irregular.empty()) {
            return std::string(irregular);
        }
    }
    return withEd(field(word, 0));
}

std::string pluralOf(std::string_view word) {
    const auto irregular = field(word, 1);
    return irregular.empty() ? withS(field(word, 0)) : std::string(irregular);
}

} // namespace

bool isTextForm(std::string_view form) {
    return form == "cap" || form == "up" || form == "id" || form == "an";
}

std::string inflect(std::string_view word, std::string_view form) {
    using Maker = std::string (*)(std::string_view);
    struct Form {
        std::string_view name;
        Maker make;
    };
    static constexpr std::array<Form, 12> kForms{{
        {"", [](std::string_view w) { return std::string(field(w, 0)); }},
        {"pl", pluralOf},
        {"s", [](std::string_view w) { return withS(field(w, 0)); }},
        {"ed", [](std::string_view w) { return pastOf(w, 1); }},
        {"en", [](std::string_view w) { return pastOf(w, 2); }},
        {"ing", [](std::string_view w) { return withIng(field(w, 0)); }},
        {"ly", [](std::string_view w) { return withLy(field(w, 0)); }},
        {"er", [](std::string_view w) { return withEr(field(w, 0)); }},
        {"cap", capitalised},
        {"up", upperCase},
        {"id", asIdentifier},
        {"an", [](std::string_view w) { return (isVowel(w[0]) ? "an " : "a ") + std::string(w); }},
    }};
    for (const Form& known : kForms) {
        if (known.name == form) {
            return known.make(word);
        }
    }
    throw std::logic_error("unknown word form '" + std::string(form) + "'");
}

} // namespace corpus

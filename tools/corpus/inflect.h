#pragma once

#include <string>
#include <string_view>

namespace corpus {

// Makes the form of an English word that a template asks for. A word of a list may carry its
// irregular forms behind slashes: nouns "foot/feet", verbs "take/took/taken".
//
// Forms of a list word:
//   ""   the word itself   pl  plural             s    third person
//   ed   past              en  past participle    ing  present participle
//   ly   adverb            er  comparative
// Forms of any text, which keep a slash as it is:
//   an   with "a" or "an" before   cap  first letter a capital
//   up   all letters capitals      id   blanks and hyphens to underscores
//
// An unknown form is a fault of a template and throws std::logic_error.
std::string inflect(std::string_view word, std::string_view form);

// True for the forms of the second group.
bool isTextForm(std::string_view form);

} // namespace corpus

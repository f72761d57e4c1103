#pragma once

#include "grammar.h"

namespace corpus {

// Sentence templates without their first capital letter and with their full stop.

// Stories ($narration, $speech, $title) need all three books, both everyday lists and the names,
// and a value for $hero, $heroine, $villain and $elder.
RuleBook storyParts();
RuleBook storyClauses();
RuleBook storyTalk();

// $statement and $theading in the manner of a technical report; technicalWords and names.
RuleBook reportSentences();

// $remark in the tone of letters between strangers; all word lists and reportSentences.
RuleBook chatSentences();

} // namespace corpus

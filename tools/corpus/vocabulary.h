#pragma once

#include "grammar.h"

namespace corpus {

// Word lists, the frequent words first. None of them is drawn from the files they stand in for.

// Country life: people, what they handle, where they are, what they feel.
RuleBook everydayNouns();              // person thing spot beast weather part idea
RuleBook everydayVerbsAndAdjectives(); // handle feel think move blow say adj trait adv degree

// Machines, measurement and programs: tnoun tabstract tverb tadj tadv, composed tfield.
RuleBook technicalWords();

// forename, surname, town, month, numbers ... and names made of syllables.
RuleBook names();

} // namespace corpus

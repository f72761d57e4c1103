#pragma once

#include <string>

#include "comparison.h"
#include "judge.h"

// What a comparison looks like, as texts. No files, no terminal.
namespace compare {

struct TableForm {
    int width = 0;         // of a terminal, into which all is fitted; 0: none
    bool showsAll = false; // else many rows are cut down to those that say something
};
std::string tableText(const Comparison& comparison, const Judgement& judgement,
                      const TableForm& form = {});
std::string csvText(const Comparison& comparison, const Judgement& judgement);
std::string jsonText(const Comparison& comparison, const Judgement& judgement);
std::string markdownText(const Comparison& comparison, const Judgement& judgement);
// Of --self: how small a difference this machine shows now, in how much time.
std::string selfText(const Comparison& comparison, const Judgement& judgement);

// As diff has it: 0 nothing is slower beyond the tolerance, 1 something is (or fails on the new
// side alone), 2 nothing could be measured, or no case had the passes that a verdict needs.
int exitStatus(const Comparison& comparison, const Judgement& judgement);

} // namespace compare

#pragma once

#include <string>
#include <vector>

#include "expander.h"

namespace corpus {

// The words of program text that all three languages share: $ident, $short and the comments.
RuleBook programWords();

// $body: the statements of the C program, with the members $m1 to $m4 and the macros $k1 to $k6.
RuleBook cStatements();

// The names that a program text repeats. Templates refer to them as $v1, $v2 ... (locals, drawn
// anew for each function), $g1, $g2 ... (globals, drawn once) and $f1, $f2 ... (functions that
// can be called; each new function replaces the oldest name).
class ProgramNames {
public:
    ProgramNames(Expander& text, int locals, int globals, int functions);

    // Draws the locals and the name $f of the next function.
    void startFunction();

    // Makes the function callable from the next ones.
    void finishFunction();

private:
    void bindNumbered(char kind, int number, const std::string& value);
    std::string freshName(std::string_view rule);

    Expander& m_text;
    int m_locals;
    int m_functions;
    int m_oldest = 0;
    std::string m_current;
    std::vector<std::string> m_used;
};

} // namespace corpus

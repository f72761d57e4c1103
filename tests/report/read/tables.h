// Pieces of performance tables, as ntkperf writes them.
#pragma once

#include <string>

namespace report {

const std::string titles =
    "Processor,Intel(R) Xeon(R) Processor  x2  2.60 GHz  Max cache size 491520 K\n"
    "OS,Linux (6.1  #1 SMP)\n"
    "Computer,vm\n"
    "Library,ntkDC  12.0.0 (open build)  Nov 22 2026\n"
    "Start,Sun Nov 22 03:44:21 2026\n";
const std::string names =
    "Function,Types,Length,CodeFile,Variant,Ratio,Clocks,Unit,Rate,Result,Comment,Spread\n";
const std::string row = "ntksEncodeLZ4_8u,8u,16384,book1,-,1.39,4.92,e,-,OK,nLps=117,1.3\n";
const std::string head = titles + names;

} // namespace report

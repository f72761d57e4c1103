#pragma once

#include <optional>
#include <string>
#include <variant>

#include "comparison.h"

// What workers and program say to each other: a line each, of one JSON object. The program speaks
// on the worker's descriptor 3, the worker answers on descriptor 4; standard output and standard
// error stay the tests' own.
//
//   worker                       program
//   hello
//   case (not yet prepared)      skip | prepare
//   passed (not measured)                          after prepare; the next case follows
//   ready                        turn | release    after prepare
//   turn                         turn | release
//   done                                           after release; the next case follows
//   end (no case is left)
//
// "quit" is an answer to whatever the worker waits for; it ends without a word.
namespace compare {

struct Hello {
    std::vector<std::string> files; // of the measured library
    std::string version;
};
struct Announced {
    int test = 0;        // from 0: place of the function in the order of this worker
    int combination = 0; // from 0: place within the function
    std::string function;
    NamedValues parameters;
};
struct PassedOver {
    std::string why; // may be empty
};
struct Ready {}; // prepared
// A turn was taken. When status is negative or failed is not empty the clocks mean nothing.
struct Taken {
    int status = 0;     // of the untimed call
    std::string failed; // "ntksX is missing in libntkdc.so.12"; else empty
    Turn turn;
};
struct Done {
    Outcome outcome;
};
struct End {
    // Keys and settings that had no effect, in the harness's words.
    std::vector<std::string> remarks;
};

using Answer = std::variant<Hello, Announced, PassedOver, Ready, Taken, Done, End>;

enum class Word { skip, prepare, turn, release, quit };
struct Order {
    Word word = Word::skip;
    int callsPerSpan = 1; // of a turn: between two readings of the clock
    int spans = 1;        // of a turn
};

// A line without its end. Numbers keep their full precision.
std::string toLine(const Answer& answer);
std::string toLine(const Order& order);
// Nothing when the line is not such a message.
std::optional<Answer> parseAnswer(const std::string& line);
std::optional<Order> parseOrder(const std::string& line);

} // namespace compare

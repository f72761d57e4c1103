#pragma once

// What a program of the harness and the process that watches over it say to each other, by files in
// memory that both have open. The program writes where it is: a pipe would wake its reader, who
// would take processor time from what is measured. The watcher looks when the program has ended or
// may hang. A successor in the same run gets a second file: what its predecessors asked to keep,
// and what the watcher saw of their end.
//
// Lines are words and fields with tabs in between. The first line of the program's file is a digit,
// the count of the signals that it has heard. Of the lines behind those that are for ever, "at" and
// "row", only the last are there.
namespace progress {

// Variables of the environment, each the number of an open file.
inline constexpr const char* fileVariable = "NTKPERF_PROGRESS";
inline constexpr const char* pastVariable = "NTKPERF_CONTINUE"; // of a successor only
// The terminal of the watcher's standard error, when that is one: the program's own is a pipe.
inline constexpr const char* terminalVariable = "NTKPERF_TERMINAL";

// Program to watcher.
inline constexpr const char* hello = "hello"; // made of the harness, at the start of its run
inline constexpr const char* keep = "keep";   // + a line for the successor
inline constexpr const char* asks = "asks";   // waits for a person, until its next word
inline constexpr const char* end = "end";     // all is written
// The test that runs, and where it is. What was said last is handed to the successor.
inline constexpr const char* test = "test"; // function, start time
inline constexpr const char* at = "at";     // label of the step, combination, whether measured,
                                            // figures (measured, spread, switched out, clocks in
                                            // calls), a number that no other one has
inline constexpr const char* row = "row";   // the combination's cells of the table

// Kept lines.
inline constexpr const char* begun = "begun";   // start time of the run, by two clocks
inline constexpr const char* answer = "answer"; // name, what was typed for it
inline constexpr const char* asked = "asked";   // function, names of its parameters
inline constexpr const char* remark = "remark"; // a setting that was not taken
// A test's result (-1: the settings do not name it), lines of the table, figures as above. It ends
// the test.
inline constexpr const char* result = "result";
inline constexpr const char* closed = "closed"; // the closing summary is written

// Watcher to program, behind the kept lines and those of the test that ran.
inline constexpr const char* lost = "lost"; // word for the table, message for the log, the last
                                            // line of standard error (may be empty)

} // namespace progress

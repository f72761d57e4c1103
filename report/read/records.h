#pragma once

#include <string_view>

#include "jsonvalues.h"
#include "reading.h"

namespace report {

// The file of records, line by line: a JSON object in each, of which "record" says what it is. A
// run begins with "run" and has an "end" unless it was killed. Unknown records and members are
// passed over, so that a later version of the program may add some.
class RecordReader {
public:
    RecordReader(const std::string& file, Reading& into) : m_file(file), m_into(into) {}

    // Throws Unreadable when the file's format is newer than what this knows.
    void take(std::string_view line, bool isWhole, long long number);
    void finish(); // after the last line

private:
    void takeRecord(const Json& record);
    void beginRun(const Json& record);
    void endRun();

    std::string m_file;
    Reading& m_into;
    Run m_run;
    std::string m_kind, m_build; // of the run that follows
    bool m_isInRun = false;
    LostLines m_lost;
};

} // namespace report

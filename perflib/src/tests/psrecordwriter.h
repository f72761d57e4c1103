#pragma once

struct psMeasurement;

// An output format of its own beside log and tables: a file with a class derived from this, and
// one psRegRecordWriter.
class psRecordWriter {
public:
    virtual ~psRecordWriter() = default;
    // Once for each combination that was measured, also when that failed; after its line of the
    // log and of the table.
    virtual void write(const psMeasurement& record) = 0;
};

#pragma once

#include "psrecordwriter.h"
#include "psstream.h"

// The records file of a run ("-x"): JSON, a line for each measurement as it was made. Lines reach a
// file whole, so that a run that is killed leaves what it had. Without a file nothing is done.
class psJsonRecords : public psRecordWriter {
public:
    psJsonRecords() = default;
    psJsonRecords(const psJsonRecords&) = delete;
    psJsonRecords& operator=(const psJsonRecords&) = delete;
    ~psJsonRecords() override;

    // False (reported, nothing added) when the file cannot be opened. The first one registers the
    // writer.
    bool addStream(const psString& name, bool append);
    void close();

    void begin(const psRunPlan& plan) override;
    void write(const psMeasurement& record) override;
    void end(const psTestList& tests) override;
    void testBegins(const psTest& test) override;
    void testEnds(const psTest& test, psResult result, double seconds) override;

private:
    void putNewInputs();
    void put(const psString& line);

    psList<o_stream*> m_streams;
    bool m_isRegistered = false;
    psString m_message; // of the test that runs
};

extern psJsonRecords g_records;

#include "psjsonrecords.h"

#include <set>
#include <string>

#include "pscputick_gcc.h"
#include "psfileiterator.h"
#include "psinit.h"
#include "psinterruption.h"
#include "psostream.h"
#include "psrecordlines.h"
#include "pstest.h"
#include "pstestformat.h"
#include "pstestlist.h"

PS_INIT_SECOND psJsonRecords g_records;

namespace {

// What tests have read. A test may be left by a jump while it reads, so that what is done at that
// moment is the least.
struct Inputs {
    std::set<std::string> told; // in the file already
    psStringList opened;        // since the last line
};

Inputs& inputs() {
    static auto& all = *new Inputs; // outlives whoever reads
    return all;
}

void noteOpened(const psString& file) {
    if (inputs().told.count(file.c_str()) == 0) {
        inputs().opened.append(file);
    }
}

// Of a test of the machine's first run ever, whose frequency nobody has measured yet: -1.
double secondsInCalls(long long clocks) {
    return clocks > 0 && psCpuTicker::knownFreq() == 0 ? -1 : psCpuTicker::knownSeconds(clocks);
}

} // namespace

psJsonRecords::~psJsonRecords() {
    close();
}

bool psJsonRecords::addStream(const psString& name, bool append) {
    o_stream* const stream = createOStream(name, append);
    if (!stream) {
        return false;
    }
    if (!m_isRegistered) {
        psRegRecordWriter(*this);
        m_isRegistered = true;
    }
    g_fileListener = noteOpened;
    m_streams.append(stream);
    return true;
}

void psJsonRecords::close() {
    for (o_stream* const stream : m_streams) {
        delete stream;
    }
    m_streams.clear();
    g_fileListener = nullptr;
    inputs() = {};
}

void psJsonRecords::begin(const psRunPlan& plan) {
    if (plan.isContinued) {
        for (const psString& name : plan.inputFiles) {
            inputs().told.insert(name.c_str());
        }
        return;
    }
    const psRunFacts facts = psRunFactsOf(plan);
    for (const psInputFacts& input : facts.corpus) {
        inputs().told.insert(input.name.c_str());
    }
    put(psRunLine(facts));
}

void psJsonRecords::write(const psMeasurement& record) {
    putNewInputs();
    put(psMeasurementLine(record));
}

void psJsonRecords::putNewInputs() {
    for (const psString& name : inputs().opened) {
        if (!inputs().told.insert(name.c_str()).second) {
            continue;
        }
        if (const auto input = psInputFactsOf(name)) {
            put(psInputLine(*input));
        }
    }
    inputs().opened.clear();
}

void psJsonRecords::testBegins(const psTest&) {
    m_message = "";
    g_ostrm.copyFaultsTo(&m_message);
}

void psJsonRecords::testEnds(const psTest& test, psResult result, double seconds) {
    g_ostrm.copyFaultsTo(nullptr);
    put(psTestLine({test.functionName(), test.info().name, test.sourceName(), seconds,
                    secondsInCalls(test.clocksInCalls()), result, psMessageText(m_message)}));
}

void psJsonRecords::end(const psTestList& tests) {
    psEndFacts facts;
    facts.tests = tests.tests();
    for (int result = PS_ACCUR_FAIL; result < psResultCount; ++result) {
        facts.failed += tests.count(static_cast<psResult>(result));
    }
    facts.isComplete = !psInterruption::wasFollowed();
    facts.seconds = tests.secondsSinceStart();
    facts.secondsInCalls = secondsInCalls(psTest::m_figures.clocksInCalls);
    facts.ticksMHz = psCpuTicker::knownFreq();
    put(psEndLine(facts));
}

void psJsonRecords::put(const psString& line) {
    for (o_stream* const stream : m_streams) {
        if (!stream->writeWhole(line)) {
            g_ostrm.reportFailure(*stream);
        }
    }
}

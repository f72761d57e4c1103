#include "records.h"

#include <utility>

#include "lines.h"

namespace report {

namespace {

constexpr long long knownVersion = 1;

std::vector<LibraryFacts> librariesOf(const Json& record) {
    std::vector<LibraryFacts> libraries;
    const Json* const list = partOf(record, "libraries");
    for (const Json& item : list ? *list : Json::array()) {
        LibraryFacts library = {
            textOf(item, "name"), textOf(item, "version"), textOf(item, "date"), {}};
        if (const std::string build = textOf(item, "build"); !build.empty()) {
            library.version += (library.version.empty() ? "(" : " (") + build + ")";
        }
        const Json* const files = partOf(item, "files");
        for (const Json& file : files ? *files : Json::array()) {
            library.files.push_back(textOf(file, "path"));
        }
        libraries.push_back(std::move(library));
    }
    return libraries;
}

CorpusFile fileOf(const Json& record) {
    return {textOf(record, "name"), wholeOf(record, "bytes"), textOf(record, "crc32")};
}

std::vector<CorpusFile> corpusOf(const Json& record) {
    std::vector<CorpusFile> corpus;
    const Json* const list = partOf(record, "corpus");
    for (const Json& file : list ? *list : Json::array()) {
        corpus.push_back(fileOf(file));
    }
    return corpus;
}

Facts factsOf(const Json& record) {
    const Json none = Json::object();
    const Json* const part = partOf(record, "machine");
    const Json& machine = part ? *part : none;
    Facts facts;
    facts.processor = textOf(machine, "processor");
    facts.processors = static_cast<int>(wholeOf(machine, "processors"));
    facts.ticksMHz = realOf(machine, "ticks_mhz").value_or(0);
    facts.system = textOf(machine, "os");
    facts.computer = textOf(machine, "computer");
    facts.started = textOf(record, "started");
    facts.libraries = librariesOf(record);
    facts.keys = textsOf(record, "keys");
    facts.corpus = corpusOf(record);
    return facts;
}

Measurement measurementOf(const Json& record) {
    Measurement row;
    row.function = textOf(record, "function");
    row.types = textOf(record, "types");
    row.parameters = valuesOf(record, "parameters");
    row.values = valuesOf(record, "values");
    row.clocksPerUnit = realOf(record, "clocks_per_unit");
    row.unit = textOf(record, "unit");
    row.unitsPerCall = realOf(record, "units_per_call").value_or(0);
    row.calls = wholeOf(record, "calls");
    // A single span has no other to be compared with.
    if (wholeOf(record, "batches") != 1) {
        row.spread = realOf(record, "spread");
    }
    row.result = textOf(record, "result");
    row.comment = textOf(record, "comment");
    row.isDeprecated = flagOf(record, "deprecated");
    row.isHot = flagOf(record, "hot");
    return row;
}

TestResult testOf(const Json& record) {
    return {textOf(record, "function"), textOf(record, "test"), textOf(record, "result"),
            textOf(record, "message"), realOf(record, "seconds").value_or(0)};
}

} // namespace

void RecordReader::take(std::string_view line, bool isWhole, long long number) {
    if (line.find_first_not_of(" \t") == std::string_view::npos) {
        return;
    }
    const Json record = Json::parse(line.begin(), line.end(), nullptr, false);
    if (record.is_object()) {
        takeRecord(record);
        return;
    }
    // What is broken ends a run that was killed; files that were put together have the next one
    // right behind it.
    const std::size_t next = line.find("{\"record\"", 1);
    if (next != std::string_view::npos) {
        take(line.substr(next), isWhole, number);
    } else if (isWhole) {
        m_lost.add(number, "it is no whole JSON object");
    }
}

void RecordReader::takeRecord(const Json& record) {
    const std::string kind = textOf(record, "record");
    if (kind == "run") {
        beginRun(record);
    } else if (kind == "cell") { // from the jobs of a cluster, before the run
        endRun();
        m_kind = textOf(record, "kind");
        m_build = textOf(record, "build");
    } else if (kind == "measurement") {
        m_isInRun = true;
        m_run.measurements.push_back(measurementOf(record));
    } else if (kind == "test") {
        m_isInRun = true;
        m_run.tests.push_back(testOf(record));
    } else if (kind == "file") {
        m_run.facts.corpus.push_back(fileOf(record));
    } else if (kind == "end") {
        if (m_run.facts.ticksMHz == 0) { // the run itself was the first to measure it
            m_run.facts.ticksMHz = realOf(record, "ticks_mhz").value_or(0);
        }
        m_run.isComplete = flagOf(record, "complete", true);
        endRun();
    }
}

void RecordReader::beginRun(const Json& record) {
    const long long version = wholeOf(record, "version");
    if (version > knownVersion) {
        throw Unreadable(m_file + " is of version " + std::to_string(version) +
                         " of the format, this program reads up to " +
                         std::to_string(knownVersion) + "; read it with a newer ntkreport");
    }
    endRun();
    m_isInRun = true;
    m_run.isComplete = false; // until its end is seen
    m_run.facts = factsOf(record);
    m_run.facts.kind = std::exchange(m_kind, "");
    m_run.facts.build = std::exchange(m_build, "");
}

void RecordReader::endRun() {
    if (!m_isInRun) {
        return;
    }
    m_isInRun = false;
    m_run.file = m_file;
    m_run.isExact = true;
    const std::string name = m_file + ": the run of " + m_run.facts.started;
    if (m_run.measurements.empty() && m_run.tests.empty()) {
        m_into.problems.push_back(name + " has measured nothing");
    } else {
        if (!m_run.isComplete) {
            m_into.notes.push_back(name + " did not come to its end; what it had measured is read");
        }
        m_into.runs.push_back(std::move(m_run));
    }
    m_run = Run();
}

void RecordReader::finish() {
    endRun();
    if (const std::string lost = m_lost.sentence(m_file, "line"); !lost.empty()) {
        m_into.problems.push_back(lost);
    }
}

} // namespace report

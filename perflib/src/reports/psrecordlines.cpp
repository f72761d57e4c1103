#include "psrecordlines.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

Json textOf(const psString& text) {
    return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

Json orNull(const psString& text) {
    return text.empty() ? Json() : textOf(text);
}

Json orNull(int number) {
    return number > 0 ? Json(number) : Json();
}

Json secondsOrNull(double seconds) {
    return seconds < 0 ? Json() : Json(seconds);
}

Json list(const psStringList& texts) {
    Json items = Json::array();
    for (const psString& text : texts) {
        items.push_back(textOf(text));
    }
    return items;
}

Json valueOf(const psValue& value) {
    if (const psString* const text = std::get_if<psString>(&value)) {
        return textOf(*text);
    }
    const double* const number = std::get_if<double>(&value);
    return number ? Json(*number) : Json(std::get<long long>(value));
}

Json membersOf(const psNamedValues& values) {
    Json members = Json::object();
    for (const psNamedValue& item : values) {
        members[item.name.c_str()] = valueOf(item.value);
    }
    return members;
}

Json inputOf(const psInputFacts& input) {
    return {{"name", textOf(input.name)},
            {"path", textOf(input.path)},
            {"bytes", input.bytes},
            {"crc32", psFormat("%08lx", input.crc32).c_str()}};
}

Json machineOf(const psRunFacts& run) {
    return {{"processor", orNull(run.processor)},
            {"processors", orNull(run.processors)},
            {"ticks_mhz", orNull(run.ticksMHz)},
            {"cache_bytes", orNull(run.cacheBytes)},
            {"os", orNull(run.os)},
            {"computer", orNull(run.computer)}};
}

Json librariesOf(const psRunFacts& run) {
    Json files = Json::array();
    for (const psString& path : run.libraryFiles) {
        files.push_back({{"name", textOf(path.getFileName())}, {"path", textOf(path)}});
    }
    Json libraries = Json::array();
    for (const psLibraryFacts& library : run.libraries) {
        libraries.push_back({{"name", textOf(library.name)},
                             {"version", textOf(library.version)},
                             {"build", orNull(library.build)},
                             {"date", orNull(library.date)},
                             {"files", files}});
    }
    return libraries;
}

psString lineOf(const Json& record) {
    const auto replaceBadBytes = Json::error_handler_t::replace;
    const std::string text = record.dump(-1, ' ', false, replaceBadBytes) + "\n";
    return {text.data(), static_cast<int>(text.size())};
}

} // namespace

psString psTimeText(time_t time) {
    tm local = {};
    localtime_r(&time, &local);
    char text[32];
    const size_t length = strftime(text, sizeof text, "%FT%T%z", &local);
    const psString all(text, static_cast<int>(length));
    return all.substr(0, all.length() - 2) + ":" + all.substr(all.length() - 2);
}

psString psMessageText(const psString& text) {
    constexpr int mostBytes = 4000;
    psString message = text;
    if (message.length() > mostBytes) {
        const psString begin = message.substr(0, mostBytes);
        message = begin.substr(0, begin.rfind("\n") + 1) + "... (the log has more)";
    }
    while (!message.empty() && message[message.length() - 1] == '\n') {
        message = message.substr(0, message.length() - 1);
    }
    return message;
}

psString psRunLine(const psRunFacts& run) {
    Json corpus = Json::array();
    for (const psInputFacts& input : run.corpus) {
        corpus.push_back(inputOf(input));
    }
    return lineOf({{"record", "run"},
                   {"format", "ntkperf"},
                   {"version", psRecordsVersion},
                   {"started", psTimeText(run.plan.start).c_str()},
                   {"program", PS_VERSION},
                   {"keys", list(run.plan.keys)},
                   {"machine", machineOf(run)},
                   {"libraries", librariesOf(run)},
                   {"corpus", corpus}});
}

psString psInputLine(const psInputFacts& input) {
    Json record = {{"record", "file"}};
    record.update(inputOf(input));
    return lineOf(record);
}

psString psMeasurementLine(const psMeasurement& m) {
    const auto ifMeasured = [&m](double clocks) {
        return m.isMeasured() && m.times.clocksPerCall > 0 ? Json(clocks) : Json();
    };
    return lineOf(
        {{"record", "measurement"},
         {"function", textOf(m.function)},
         {"types", textOf(m.types)},
         {"source", textOf(m.source)},
         {"parameters", membersOf(m.parameters)},
         {"values", membersOf(m.values)},
         {"method", textOf(m.times.method)},
         {"clocks_per_call", ifMeasured(m.times.clocksPerCall)},
         {"calls", m.times.calls},
         {"batches", m.times.batches},
         {"spread", m.isMeasured() && m.times.batches > 1 ? Json(m.times.spread) : Json()},
         {"switches", m.times.switches},
         {"accuracy", m.isMeasured() && m.times.hasAccuracy ? Json(m.times.accuracy) : Json()},
         {"units_per_call", m.unitsPerCall},
         {"unit", textOf(m.unit.trimmed())},
         {"flops_per_call", m.flopsPerCall},
         {"clocks_per_unit", ifMeasured(m.clocksPerUnit())},
         {"result", psResultShortName(m.result)},
         {"comment", textOf(m.comment)},
         {"deprecated", m.deprecated},
         {"hot", m.hot}});
}

psString psTestLine(const psTestFacts& test) {
    return lineOf({{"record", "test"},
                   {"function", textOf(test.function)},
                   {"test", textOf(test.test)},
                   {"source", textOf(test.source)},
                   {"seconds", test.seconds},
                   {"seconds_in_calls", secondsOrNull(test.secondsInCalls)},
                   {"result", psResultShortName(test.result)},
                   {"message", textOf(test.message)}});
}

psString psEndLine(const psEndFacts& end) {
    return lineOf({{"record", "end"},
                   {"tests", end.tests},
                   {"failed", end.failed},
                   {"complete", end.isComplete},
                   {"seconds", end.seconds},
                   {"seconds_in_calls", secondsOrNull(end.secondsInCalls)},
                   {"ticks_mhz", orNull(end.ticksMHz)}});
}

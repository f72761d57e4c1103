#include "message.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace compare {

namespace {

using json = nlohmann::ordered_json;

// JSON has no number for infinity; their text does not make a message unreadable.
json toJson(const Value& value) {
    const double* const number = std::get_if<double>(&value);
    if (number && !std::isfinite(*number)) {
        return std::to_string(*number);
    }
    return std::visit([](const auto& held) { return json(held); }, value);
}

json valuesToJson(const NamedValues& values) {
    json object = json::object();
    for (const NamedValue& named : values) {
        object[named.name] = toJson(named.value);
    }
    return object;
}

Value valueOf(const json& value) {
    if (value.is_number_integer()) {
        return value.get<long long>();
    }
    if (value.is_number()) {
        return value.get<double>();
    }
    return value.get<std::string>();
}

NamedValues valuesOf(const json& object) {
    NamedValues values;
    for (const auto& [name, value] : object.items()) {
        values.push_back({name, valueOf(value)});
    }
    return values;
}

json toJson(const Hello& hello) {
    return {{"hello", {{"files", hello.files}, {"version", hello.version}}}};
}
json toJson(const Announced& announced) {
    return {{"case",
             {{"test", announced.test},
              {"combination", announced.combination},
              {"function", announced.function},
              {"parameters", valuesToJson(announced.parameters)}}}};
}
json toJson(const PassedOver& passed) {
    return {{"passed", passed.why}};
}
json toJson(const Ready&) {
    return {{"ready", true}};
}
json toJson(const Taken& taken) {
    return {{"turn",
             {{"status", taken.status},
              {"failed", taken.failed},
              {"clocks", taken.turn.clocks},
              {"calls", taken.turn.calls},
              {"involuntary", taken.turn.involuntarySwitches},
              {"migrations", taken.turn.migrations},
              {"minor", taken.turn.minorFaults},
              {"major", taken.turn.majorFaults}}}};
}
json toJson(const Done& done) {
    const Outcome& outcome = done.outcome;
    return {{"done",
             {{"status", outcome.status},
              {"unit", outcome.unit},
              {"units", outcome.unitsPerCall},
              {"values", valuesToJson(outcome.values)}}}};
}
json toJson(const End& end) {
    return {{"end", {{"remarks", end.remarks}}}};
}

Hello helloOf(const json& hello) {
    return {hello.at("files"), hello.at("version")};
}
Announced announcedOf(const json& announced) {
    return {announced.at("test"), announced.at("combination"), announced.at("function"),
            valuesOf(announced.at("parameters"))};
}
Taken takenOf(const json& taken) {
    Taken result{taken.at("status"), taken.at("failed"), {}};
    result.turn.clocks = taken.at("clocks");
    result.turn.calls = taken.at("calls");
    result.turn.involuntarySwitches = taken.at("involuntary");
    result.turn.migrations = taken.at("migrations");
    result.turn.minorFaults = taken.at("minor");
    result.turn.majorFaults = taken.at("major");
    return result;
}
Done doneOf(const json& done) {
    return {{done.at("status"), done.at("unit"), done.at("units"), valuesOf(done.at("values"))}};
}

Answer answerOf(const std::string& name, const json& value) {
    if (name == "hello") {
        return helloOf(value);
    }
    if (name == "case") {
        return announcedOf(value);
    }
    if (name == "passed") {
        return PassedOver{value};
    }
    if (name == "ready" && value.get<bool>()) {
        return Ready{};
    }
    if (name == "turn") {
        return takenOf(value);
    }
    if (name == "done") {
        return doneOf(value);
    }
    if (name == "end") {
        return End{value.at("remarks")};
    }
    throw std::invalid_argument("no such message");
}

struct NamedWord {
    Word word;
    const char* name;
};
constexpr NamedWord words[] = {{Word::skip, "skip"},
                               {Word::prepare, "prepare"},
                               {Word::turn, "turn"},
                               {Word::release, "release"},
                               {Word::quit, "quit"}};

const char* nameOf(Word word) {
    for (const NamedWord& candidate : words) {
        if (candidate.word == word) {
            return candidate.name;
        }
    }
    return "";
}

// What the library throws for anything that is not as it should be, be it no JSON at all, a member
// that is missing or one of another type, becomes "no message".
template <class Message, class Read>
std::optional<Message> parsed(const std::string& line, Read read) {
    try {
        return read(json::parse(line));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

std::string toLine(const Answer& answer) {
    return std::visit([](const auto& message) { return toJson(message); }, answer)
        .dump(-1, ' ', false, json::error_handler_t::replace); // names may hold any bytes
}

std::string toLine(const Order& order) {
    json object = {{"order", nameOf(order.word)}};
    if (order.word == Word::turn) {
        object["calls"] = order.callsPerSpan;
        object["spans"] = order.spans;
    }
    return object.dump();
}

std::optional<Answer> parseAnswer(const std::string& line) {
    return parsed<Answer>(line, [](const json& message) {
        if (!message.is_object() || message.size() != 1) {
            throw std::invalid_argument("not one message");
        }
        return answerOf(message.begin().key(), message.begin().value());
    });
}

std::optional<Order> parseOrder(const std::string& line) {
    return parsed<Order>(line, [](const json& message) {
        const std::string name = message.at("order");
        for (const NamedWord& candidate : words) {
            if (name == candidate.name) {
                return Order{candidate.word, message.value("calls", 1), message.value("spans", 1)};
            }
        }
        throw std::invalid_argument("no such order");
    });
}

} // namespace compare

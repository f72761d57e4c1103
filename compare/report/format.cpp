#include "format.h"

namespace compare {

namespace {

// Of a parameter that is a path; other values as they are ("1/2").
std::string fileName(const std::string& parameter, const std::string& value) {
    const bool isFile = parameter.ends_with("File") || value.starts_with('/');
    return isFile ? value.substr(value.rfind('/') + 1) : value;
}

} // namespace

std::string parametersText(const Both<NamedValues>& parameters, ParameterForm form) {
    std::vector<std::string> words;
    const auto add = [&](const std::string& name, const Value* base, const Value* changed) {
        std::string before = base ? valueText(*base) : "none";
        std::string now = changed ? valueText(*changed) : "none";
        // Two files of one name are told apart by their folders.
        const bool areOneName = before != now && fileName(name, before) == fileName(name, now);
        if (form != ParameterForm::whole && !areOneName) {
            before = fileName(name, before);
            now = fileName(name, now);
        }
        words.push_back((form == ParameterForm::values ? "" : name + "=") + before +
                        (now == before ? "" : " -> " + now));
    };
    for (const auto& [name, value] : parameters.base) {
        add(name, &value, findValue(parameters.changed, name));
    }
    for (const auto& [name, value] : parameters.changed) {
        if (!findValue(parameters.base, name)) {
            add(name, nullptr, &value);
        }
    }
    return joined(words, " ");
}

} // namespace compare

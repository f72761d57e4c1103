#include "json.h"

namespace report {

std::string compact(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string lines(const std::vector<std::string>& elements) {
    std::string text;
    for (const std::string& element : elements) {
        text += (text.empty() ? "\n" : ",\n") + element;
    }
    return text + "\n";
}

} // namespace report

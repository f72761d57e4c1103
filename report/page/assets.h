#pragma once

#include <string_view>

// The source files of the page, as the build has put them into the program (assets.cmake).
namespace report {

extern const std::string_view pageHtml, pageCss, pageScript, chartScript;

} // namespace report

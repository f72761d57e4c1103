#include "page.h"

#include <array>
#include <utility>

#include "assets.h"
#include "data.h"

namespace report {

namespace {

// The places of page.html that are filled, in their order. Only the text of the template is looked
// through, so nothing that the data hold can be taken for a place.
std::string filled(std::string_view html,
                   const std::array<std::pair<std::string_view, std::string_view>, 4>& places) {
    std::string page;
    for (const auto& [place, content] : places) {
        const std::size_t begin = html.find(place);
        page += html.substr(0, begin);
        page += content;
        html.remove_prefix(begin + place.size());
    }
    return page += html;
}

} // namespace

std::string pageText(const Report& report) {
    const std::string data = pageData(report);
    return filled(pageHtml, {{{"/*page.css*/", pageCss},
                              {"/*data*/", data},
                              {"/*chart.js*/", chartScript},
                              {"/*page.js*/", pageScript}}});
}

} // namespace report

#include "commandline.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace common {

namespace {

struct Formatter : CLI::Formatter {
    explicit Formatter(std::string usage) : m_usage(std::move(usage)) {}
    std::string make_usage(const CLI::App*, std::string) const override { return m_usage; }

    std::string m_usage;
};

} // namespace

void describeProgram(CLI::App& app, const std::string& usage, const std::string& footer) {
    app.formatter(std::make_shared<Formatter>(usage));
    app.footer(footer);
    app.set_help_flag("-h,--help", "Print this and exit");
    app.set_version_flag("-V,--version", app.get_name() + " " + NTK_VERSION,
                         "Print the version and exit");
}

std::string parseWords(CLI::App& app, std::vector<std::string> words) {
    std::reverse(words.begin(), words.end()); // the order that CLI11 wants
    try {
        app.parse(words);
    } catch (const CLI::CallForHelp&) {
        return app.help();
    } catch (const CLI::CallForVersion&) {
        return app.version() + "\n";
    }
    return "";
}

} // namespace common

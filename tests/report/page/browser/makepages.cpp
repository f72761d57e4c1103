// makepages FOLDER: writes the pages for the test in the browser.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "page.h"
#include "reports.h"

namespace {

bool write(const std::filesystem::path& file, const report::Report& report) {
    std::ofstream stream(file, std::ios::binary);
    stream << report::pageText(report);
    return static_cast<bool>(stream.flush());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "makepages: needs the folder for the pages\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    const bool isWritten = write(folder / "plain.html", made::plain()) &&
                           write(folder / "history.html", made::plain(8)) &&
                           write(folder / "builds.html", made::twoBuilds()) &&
                           write(folder / "foreign.html", made::foreign()) &&
                           write(folder / "faults.html", made::faults()) &&
                           write(folder / "hostile.html", made::hostile()) &&
                           write(folder / "rows.html", made::rows(20000)) &&
                           write(folder / "empty.html", {});
    if (!isWritten) {
        std::cerr << "makepages: cannot write the pages to " << folder << '\n';
    }
    return isWritten ? 0 : 1;
}

#include "command.h"

#include <exception>
#include <ostream>

#include "writer.h"

namespace corpus {

namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;
constexpr int kWrongArguments = 2;

constexpr const char* kUsage =
    "usage: ntkcorpus [--force] DIR\n"
    "Writes fourteen stand-ins for the files of the benchmark corpus into the directory DIR,\n"
    "which is created when it is missing. Each has the name and size of the real file and about\n"
    "its kind and packing ratio; the bytes are the same on every machine.\n"
    "  --force  replace files of these names that have other contents\n"
    "  --help   print this text\n";

int make(const std::string& directory, bool replaceOthers, std::ostream& out, std::ostream& err) {
    try {
        const MakeResult result = makeCorpus(directory, replaceOthers, out);
        out << result.written << " files written, " << result.unchanged << " already there, in "
            << directory << "\n";
    } catch (const std::exception& error) {
        err << "ntkcorpus: " << error.what() << "\n";
        return kFailure;
    }
    return kSuccess;
}

} // namespace

int runCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    bool replaceOthers = false;
    std::string directory;
    for (const std::string& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            out << kUsage;
            return kSuccess;
        }
        if (argument == "--force") {
            replaceOthers = true;
        } else if (argument.empty() || argument[0] == '-' || !directory.empty()) {
            err << "ntkcorpus: unexpected argument '" << argument << "'\n" << kUsage;
            return kWrongArguments;
        } else {
            directory = argument;
        }
    }
    if (directory.empty()) {
        err << "ntkcorpus: no directory given\n" << kUsage;
        return kWrongArguments;
    }
    return make(directory, replaceOthers, out, err);
}

} // namespace corpus

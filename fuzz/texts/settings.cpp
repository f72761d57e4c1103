// Settings files of any bytes: what is read is written so that it reads back as the same, and
// writing that again gives the same bytes.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

#include "psinifile.h"
#include "text.h"

namespace {

// A file of this process's own, in memory where the system has such a folder: every write waits
// for the disk.
class File {
public:
    File() {
        const std::filesystem::path shared = "/dev/shm";
        m_folder =
            (access(shared.c_str(), W_OK) == 0 ? shared : std::filesystem::temp_directory_path()) /
            ("ntkperf-fuzz-" + std::to_string(getpid()));
        std::filesystem::create_directory(m_folder);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { std::filesystem::remove_all(m_folder); }

    psString path() const { return (m_folder / "settings.ini").c_str(); }
    std::string contents() const {
        std::ifstream file(path().c_str(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const Bytes& bytes) const {
        std::ofstream(path().c_str(), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::filesystem::path m_folder;
};

std::string show(const psValues& values) {
    std::string text;
    for (const psValueItem* item : values) {
        for (const psString& part : {item->m_key, item->m_value, item->m_comment}) {
            text += std::string(part.c_str(), static_cast<size_t>(part.length())) + '\0';
        }
        text += '\n';
    }
    return text;
}

std::string show(const psIniFile& settings) {
    std::string text = show(settings.strayValues());
    for (const psSectionItem* section : settings.sections()) {
        text += '[';
        text += section->m_name.c_str();
        text += "]\n" + show(section->m_values);
    }
    return text;
}

std::string read(const File& file) {
    psIniFile settings;
    FUZZ_CHECK(settings.open(file.path(), false));
    return show(settings);
}

constexpr const char* addedSection = "Added section";

// Written without a change but for a section that is there already the second time.
std::string rewritten(const File& file) {
    psIniFile settings;
    FUZZ_CHECK(settings.open(file.path(), true));
    settings.write(addedSection);
    const std::string shown = show(settings);
    FUZZ_CHECK(settings.close());
    return shown;
}

// A value under any names is found again, in the store and in the file.
void checkValue(const File& file, const psString& section, const psString& key,
                const psString& value) {
    psIniFile settings;
    FUZZ_CHECK(settings.open(file.path(), true));
    settings.write(section, key, value, "why");
    FUZZ_CHECK(settings.read(section, key, "none") == value);
    FUZZ_CHECK(settings.valueExist(section, key) && settings.sectionExist(section));
    settings.deleteKey(section, key);
    FUZZ_CHECK(!settings.valueExist(section, key));
    settings.write(section, key, value);
    settings.eraseSection(section);
    FUZZ_CHECK(!settings.sectionExist(section));
    settings.write(section, key, value);
    FUZZ_CHECK(settings.close());
}

// Nothing in it has a meaning in the file.
bool isPlain(const psString& text) {
    if (text.empty() || !(text == text.trimmed())) {
        return false;
    }
    for (int i = 0; i < text.length(); ++i) {
        if (text[i] == '=' || text[i] == '[' || text[i] == ']' || text[i] == '/' ||
            text[i] == '\n' || text[i] == '\r' || text[i] == '\0' || text[i] == '\xef') {
            return false;
        }
    }
    return true;
}

} // namespace

int LLVMFuzzerTestOneInput(const Ntk8u* data, std::size_t size) {
    static const File file;
    fuzz::Input in(data, size);
    const psString section = fuzz::takeWord(in);
    const psString key = fuzz::takeWord(in);
    const psString value = fuzz::takeWord(in);
    file.write(in.rest());

    const std::string first = rewritten(file);
    const std::string bytes = file.contents();
    FUZZ_CHECK(read(file) == first);
    FUZZ_CHECK(rewritten(file) == first);
    FUZZ_CHECK(file.contents() == bytes);

    checkValue(file, section, key, value);
    if (isPlain(section) && isPlain(key) && isPlain(value)) {
        psIniFile settings;
        FUZZ_CHECK(settings.open(file.path(), false));
        FUZZ_CHECK(settings.read(section, key, "none") == value);
    }
    FUZZ_CHECK(rewritten(file) == read(file));
    return 0;
}

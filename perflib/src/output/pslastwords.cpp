#include "pslastwords.h"

#include <cstddef>
#include <unistd.h>

#include "psterminalline.h"

namespace {
constexpr int mostFiles = 16;
constexpr int none = -1;
constinit int g_files[mostFiles] = {none, none, none, none, none, none, none, none,
                                    none, none, none, none, none, none, none, none};

void replace(int from, int to) {
    for (int& file : g_files) {
        if (file == from) {
            file = to;
            return;
        }
    }
}

void writeTo(int file, const char* text, size_t length) {
    [[maybe_unused]] const ssize_t lost = write(file, text, length); // nobody is left to be told
}
} // namespace

void psAddLastWordsFile(int file) {
    replace(none, file);
}

void psRemoveLastWordsFile(int file) {
    replace(file, none);
}

void psSayLastWords(const char* const* parts, int count) {
    psClearTerminalLine();
    char text[512];
    size_t length = 0;
    for (int i = 0; i < count; ++i) {
        for (const char* c = parts[i]; *c && length < sizeof text; ++c) {
            text[length++] = *c;
        }
    }
    for (const int file : g_files) {
        if (file != none) {
            writeTo(file, text, length);
        }
    }
    writeTo(STDERR_FILENO, text, length);
}

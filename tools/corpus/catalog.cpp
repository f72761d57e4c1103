#include "catalog.h"

#include "files.h"

namespace corpus {

std::span<const FileKind> catalog() {
    static constexpr FileKind kFiles[] = {
        {"bib", 111261, makeBibliography},   {"book1", 768771, makeNovel},
        {"book2", 610856, makeTextbook},     {"geo", 102400, makeSurvey},
        {"news", 377109, makeNews},          {"obj1", 21504, makeSmallObject},
        {"obj2", 246814, makeLargeObject},   {"paper1", 53161, makeArticle},
        {"paper2", 82199, makeEssay},        {"pic", 513216, makeFaxPage},
        {"progc", 39611, makeCProgram},      {"progl", 71646, makeLispProgram},
        {"progp", 49379, makePascalProgram}, {"trans", 93695, makeSession},
    };
    return kFiles;
}

} // namespace corpus

#pragma once

#include <cstddef>
#include <string>

namespace corpus {

// One maker per file. Each returns exactly sizeBytes bytes, the same on every machine.
std::string makeBibliography(std::size_t sizeBytes);  // bib
std::string makeNovel(std::size_t sizeBytes);         // book1
std::string makeTextbook(std::size_t sizeBytes);      // book2
std::string makeSurvey(std::size_t sizeBytes);        // geo
std::string makeNews(std::size_t sizeBytes);          // news
std::string makeSmallObject(std::size_t sizeBytes);   // obj1
std::string makeLargeObject(std::size_t sizeBytes);   // obj2
std::string makeArticle(std::size_t sizeBytes);       // paper1
std::string makeEssay(std::size_t sizeBytes);         // paper2
std::string makeFaxPage(std::size_t sizeBytes);       // pic
std::string makeCProgram(std::size_t sizeBytes);      // progc
std::string makeLispProgram(std::size_t sizeBytes);   // progl
std::string makePascalProgram(std::size_t sizeBytes); // progp
std::string makeSession(std::size_t sizeBytes);       // trans

} // namespace corpus

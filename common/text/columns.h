#pragma once

#include <string>
#include <vector>

// Texts in lines and columns.
namespace common {

// Quoted where a shell would need it, so that the line can be repeated.
std::string keysText(const std::vector<std::string>& keys);
// Joined by the separator, without the empty ones.
std::string joined(const std::vector<std::string>& parts, const std::string& separator);

// Columns on a terminal: characters, not bytes.
int columnsOf(const std::string& text);
// Without control characters, which a file name or a worker's last words may hold.
std::string printable(const std::string& text);
std::string padded(const std::string& text, int columns, bool toTheRight = false);
// At most so many columns; what is left out is the middle, "..." in its place.
std::string shortened(const std::string& text, int columns);
std::string cut(const std::string& text, int columns); // what is left out is the end
// Broken between words into lines of at most so many columns (0: of any), further ones indented.
std::string wrapped(const std::string& text, int columns, const std::string& indent);

} // namespace common

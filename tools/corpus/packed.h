#pragma once

#include <array>
#include <string>

namespace corpus {

// The sizes that LZ4, gzip -6 and bzip2 -9 make of the data, in this order.
std::array<double, 3> packedSizes(std::string data);

} // namespace corpus

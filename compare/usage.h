#pragma once

#include <stdexcept>

namespace compare {

// Nothing was started: what() says what is wrong with the command line and what to do.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace compare

#pragma once

#include <string_view>

namespace vantel {

// Stops the process for a programming error: the message goes to standard
// error, then the process aborts. Never use it for bad input that a person
// can fix; throw a recoverable error instead.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace vantel

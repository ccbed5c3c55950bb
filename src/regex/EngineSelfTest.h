#pragma once
// Start-up proves that the regular-expression engine can be created and used
// before any window is shown.

#include <optional>
#include <string_view>

#include "core/MessageHost.h"

namespace vantorel {

// Compiles `pattern` and runs it on `subject`. Returns nothing when the
// engine works, else the message to show before the program ends.
std::optional<Message> EngineSelfTest(std::string_view pattern = "test",
                                      std::string_view subject = "this is a test");

}  // namespace vantorel

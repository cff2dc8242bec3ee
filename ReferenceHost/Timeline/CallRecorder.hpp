#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// Told of each call that the component makes, with its arguments as text, before the call takes effect. May
/// be empty.
using CallRecorder =
    std::function<void(const char* call, std::vector<std::pair<std::string, std::string>> arguments)>;

}  // namespace ReferenceHost

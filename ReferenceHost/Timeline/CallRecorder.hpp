#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// A call's arguments, by label and as text.
using CallArguments = std::vector<std::pair<std::string, std::string>>;

/// Told of each call that the component makes, before the call takes effect. May be empty.
using CallRecorder = std::function<void(const char* call, CallArguments arguments)>;

}  // namespace ReferenceHost

#pragma once

#include "Base/Result.hpp"

#include <functional>

namespace Base {

/// How an asynchronous call reports its end: called once, with a value or an error, from any thread, before or after
/// the call has returned.
///
/// Where the component hands a completion to its host, a second call is ignored, a call after the component has lost
/// interest is harmless, and destroying every copy without a call counts as a failure: whoever waits is never left
/// waiting by a dropped completion. What the component does with the answer never runs inside the call.
template <typename Value>
using Completion = std::function<void(Result<Value>)>;

}  // namespace Base

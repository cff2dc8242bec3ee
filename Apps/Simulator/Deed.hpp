#pragma once

#include <functional>
#include <string>
#include <utility>

namespace Simulator {

/// What a step comes to, found before anything is done: something to do, or why there is nothing to do.
struct Deed {
    std::function<void()> run;
    std::string skipped;
};

[[nodiscard]] inline Deed doing(std::function<void()> run) { return {std::move(run), {}}; }
[[nodiscard]] inline Deed nothingToDo(std::string why) { return {{}, std::move(why)}; }

}  // namespace Simulator

#include "Apps/CodingDesk/Performance.hpp"

#include "Apps/CodingDesk/Stage.hpp"
#include "Apps/CodingDesk/Text.hpp"
#include "Base/Error.hpp"

#include <exception>
#include <string>

namespace CodingDesk {

bool perform(const Scenario& scenario, std::uint64_t seed, Console& console, std::ostream* log) {
    const auto colors = console.look().colors;
    console.say("\n" + bold("Scenario " + std::string(scenario.name), colors) + ": " +
                std::string(scenario.about) + ".\n");
    std::string failure;
    Stage stage(console, seed);
    try {
        scenario.play(stage);
        stage.close();
    } catch (...) {
        failure = printable(Base::describe(std::current_exception()));
    }
    if (log != nullptr) {
        stage.world().trace.write(*log);
    }
    console.say(failure.empty() ? bold("All went as it should.", colors)
                                : bold("NOT as it should be", colors) + ": " + failure);
    return failure.empty();
}

}  // namespace CodingDesk

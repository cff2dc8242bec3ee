#include "Apps/Simulator/Drawing/TraceText.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "Tests/Fuzz/Fuzz.hpp"

template <typename Read, typename Write>
static void checkReader(std::string_view input, Read readStream, Write write) {
    const auto read = [&](std::string_view text) {
        std::istringstream stream{std::string(text)};
        return readStream(stream);
    };
    if (accepts(read, input)) {
        std::ostringstream copy;
        write(copy, read(input));
        require(read(copy.str()) == read(input), "what was written is read back");
        require(!accepts(read, copy.str() + "9e9 Ann tag x="), "a line is whole");
    }
}

static void check(std::string_view input) {
    checkReader(input, Simulator::readPlan, Simulator::write);
    checkReader(input, Simulator::readTrace, [](std::ostream& stream, const auto& trace) {
        std::ranges::copy(trace, std::ostream_iterator<ReferenceHost::TraceEntry>(stream, "\n"));
    });
}

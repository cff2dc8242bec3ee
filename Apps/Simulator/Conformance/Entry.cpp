#include "Apps/Simulator/Conformance/Entry.hpp"

#include "Apps/Simulator/Record.hpp"

#include <charconv>
#include <unordered_map>

namespace Simulator::Conformance {

Kind kindOf(std::string_view text) {
    namespace TraceKind = ReferenceHost::TraceKind;
    static const std::unordered_map<std::string_view, Kind> kinds{
        {TraceKind::call, Kind::call},
        {TraceKind::answer, Kind::answer},
        {"effect", Kind::effect},
        {"subscription", Kind::subscription},
        {"delivery", Kind::delivery},
        {TraceKind::logInfo, Kind::info},
        {TraceKind::logWarn, Kind::warning},
        {TraceKind::logError, Kind::error},
        {TraceKind::logUsage, Kind::usage},
        {TraceKind::blockStart, Kind::blockStart},
        {TraceKind::blockEnd, Kind::blockEnd},
        {TraceKind::count, Kind::count},
        {TraceKind::uploadStart, Kind::uploadStart},
        {TraceKind::uploadEnd, Kind::uploadEnd},
        {TraceKind::wrongThread, Kind::wrongThread},
        {TraceKind::observerFailed, Kind::observerFailed},
        {TraceKind::notification, Kind::notification},
        {TraceKind::alert, Kind::alert},
        {TraceKind::alertAnswer, Kind::alertAnswer},
        {SimulatedKind::edit, Kind::edit},
        {SimulatedKind::fault, Kind::fault},
        {SimulatedKind::stay, Kind::stay},
        {SimulatedKind::stage, Kind::stage}};
    const auto found = kinds.find(text);
    return found == kinds.end() ? Kind::other : found->second;
}

std::int64_t numberIn(std::string_view text) {
    std::int64_t number = 0;
    (void)std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

}  // namespace Simulator::Conformance

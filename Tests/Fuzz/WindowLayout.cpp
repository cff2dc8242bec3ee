#include "Components/RemoteCoding/Resources/LayoutReader.hpp"
#include "Tests/Fuzz/Fuzz.hpp"

#include <set>

using namespace RemoteCoding;

static void check(std::string_view input) {
    const auto layout = readWindowLayout(input);
    std::set<std::string> outlets;
    const auto controls = layout.succeeded() ? layout.value().controls : WindowLayout().controls;
    for (const auto& [kind, outlet, title, action, isEnabled, isDefault, isCancel, columns] : controls) {
        require(outlet.empty() || outlets.insert(outlet).second, "an outlet is one control's");
        require(columns.empty() || kind == WindowLayoutControl::Kind::tableView, "columns are a table's");
    }
    const std::string start(input.substr(0, input.rfind('}')));
    for (const char* more : {"", ",}", ",\"colour\":1}", ",\"name\":\"\"}", ",\"title\":\"\"}"}) {
        require(!layout.succeeded() || !readWindowLayout(start + more).succeeded(), "members are known");
    }
}

#include "Components/RemoteCoding/Resources/WindowLayouts.hpp"

#include "Components/RemoteCoding/Resources/LayoutReader.hpp"
#include "Components/RemoteCoding/Resources/ResourceBundle.hpp"

#include <string>

namespace RemoteCoding {

namespace {

void localize(std::string& text, const HostEnvironment& environment) {
    if (!text.empty()) {
        text = ResourceBundle::of(BundleToken{}).text(environment.languages, text);
    }
}

}  // namespace

std::optional<WindowLayout> windowLayout(const HostEnvironment& environment, std::string_view name) {
    const auto resource = ResourceBundle::of(BundleToken{}).resource(std::string(name) + ".json");
    if (!resource) {
        return std::nullopt;
    }
    WindowLayout layout = readWindowLayout(*resource).value();
    localize(layout.title, environment);
    for (auto& control : layout.controls) {
        localize(control.title, environment);
        for (auto& column : control.columns) {
            localize(column.title, environment);
        }
    }
    return layout;
}

}  // namespace RemoteCoding

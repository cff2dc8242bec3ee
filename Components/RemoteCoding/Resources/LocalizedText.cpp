#include "Components/RemoteCoding/Resources/LocalizedText.hpp"

#include "Components/RemoteCoding/Resources/ResourceBundle.hpp"

namespace RemoteCoding {

std::string localized(const HostEnvironment& environment, std::string_view key,
                      std::string_view /*comment*/) {
    return ResourceBundle::of(BundleToken{}).text(environment.languages, key);
}

}  // namespace RemoteCoding

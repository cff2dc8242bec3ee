#include "ReferenceHost/UserDefaults.hpp"

namespace ReferenceHost {

std::optional<bool> UserDefaults::boolForKey(const std::string& key) const {
    if (recordCall_) {
        recordCall_("boolForKey", {{"key", key}});
    }
    if (fault) {
        std::rethrow_exception(fault);
    }
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional<bool>(found->second);
}

void UserDefaults::setBool(const std::string& key, std::optional<bool> value) {
    if (value) {
        values_.insert_or_assign(key, *value);
    } else {
        values_.erase(key);
    }
}

}  // namespace ReferenceHost

#include "Components/RemoteCoding/Resources/ResourceBundle.hpp"

#include "Components/RemoteCoding/Resources/EmbeddedResources.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view tableExtension = ".po";

// Language tags are of ASCII letters, and their case does not count.
std::string lowerCase(std::string_view tag) {
    std::string lower(tag);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return lower;
}

/// Takes the last subtag away. False when it is the only one.
bool shorten(std::string& tag) {
    const auto last = tag.rfind('-');
    if (last == std::string::npos) {
        return false;
    }
    tag.erase(last);
    return true;
}

}  // namespace

const ResourceBundle& ResourceBundle::of(BundleToken /*token*/) {
    // Never destroyed: a window may still ask while static objects go.
    static const auto& bundle = *new ResourceBundle;
    return bundle;
}

ResourceBundle::ResourceBundle() {
    for (const auto& file : embeddedResources()) {
        if (file.name.ends_with(tableExtension)) {
            auto table = StringTable::parse(file.contents);
            if (table.succeeded()) {
                tables_.emplace(lowerCase(file.name.substr(0, file.name.size() - tableExtension.size())),
                                std::move(table).value());
            }
        }
    }
}

std::optional<std::string_view> ResourceBundle::resource(std::string_view name) const {
    for (const auto& file : embeddedResources()) {
        if (file.name == name) {
            return file.contents;
        }
    }
    return std::nullopt;
}

std::string ResourceBundle::text(const std::vector<std::string>& languages, std::string_view key) const {
    const auto* table = this->table(languages);
    const auto* translation = table != nullptr ? table->find(key) : nullptr;
    return translation != nullptr ? *translation : std::string(key);
}

const StringTable* ResourceBundle::table(const std::vector<std::string>& languages) const {
    for (const auto& language : languages) {
        auto tag = lowerCase(language);
        do {
            if (tag == "en") {
                return nullptr;
            }
            if (const auto found = tables_.find(tag); found != tables_.end()) {
                return &found->second;
            }
        } while (shorten(tag));
    }
    return nullptr;
}

}  // namespace RemoteCoding

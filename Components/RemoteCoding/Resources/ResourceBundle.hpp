#pragma once

#include "Components/RemoteCoding/Resources/StringTable.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace RemoteCoding {

/// The anchor of the component's own bundle: a library that is loaded beside it has a token, and a bundle, of its own.
class BundleToken {};

/// The files of `Resources/`, which are built into the library. Any thread.
class ResourceBundle {
public:
    /// The bundle that the token belongs to: looked up on first use and kept for the life of the process.
    [[nodiscard]] static const ResourceBundle& of(BundleToken token);

    /// The contents of the file of that name; absent when there is none.
    [[nodiscard]] std::optional<std::string_view> resource(std::string_view name) const;

    /// The text of that key in the first of these languages for which there is a table; the key itself when there is none,
    /// or no such text in it. "fr-CH" also means the table "fr" (RFC 4647, section 3.4); "en" means the keys.
    [[nodiscard]] std::string text(const std::vector<std::string>& languages, std::string_view key) const;

private:
    ResourceBundle();

    [[nodiscard]] const StringTable* table(const std::vector<std::string>& languages) const;

    std::map<std::string, StringTable, std::less<>> tables_;  // by language tag in lower case
};

}  // namespace RemoteCoding

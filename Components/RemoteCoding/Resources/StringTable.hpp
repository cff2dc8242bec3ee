#pragma once

#include "Base/Result.hpp"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace RemoteCoding {

/// Translations by key, read from a file in the PO format of GNU gettext (its manual, "The Format of PO Files"), of which
/// this is a strict subset: UTF-8, one `msgid` and one `msgstr` an entry, no contexts, no plurals. Entries marked as fuzzy
/// and those with an empty `msgstr` are not translated yet and left out; obsolete entries are comments.
class StringTable {
public:
    /// The failure is a `Base::DescribedError` that names the line and what is wrong there. The time grows with the text.
    [[nodiscard]] static Base::Result<StringTable> parse(std::string_view text);

    /// Null when there is no translation.
    [[nodiscard]] const std::string* find(std::string_view key) const;

private:
    std::map<std::string, std::string, std::less<>> translations_;
};

}  // namespace RemoteCoding

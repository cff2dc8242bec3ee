#include "Components/RemoteCoding/Resources/StringTable.hpp"

#include "Base/Error.hpp"
#include "Base/UTF8.hpp"

#include <cstddef>
#include <optional>
#include <set>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view blanks = " \t";

/// What is wrong with a line.
struct Fault {
    std::string_view what;
};

/// The text of a quoted string, which must be all of `line`.
std::string unquoted(std::string_view line) {
    if (line.size() < 2 || line.front() != '"') {
        throw Fault{"a quoted string is expected"};
    }
    std::string text;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (line[i] == '"') {
            if (i + 1 != line.size()) {
                throw Fault{"something follows the closing quote"};
            }
            return text;
        }
        if (line[i] != '\\') {
            text += line[i];
            continue;
        }
        constexpr std::string_view letters = "\"\\ntr";
        constexpr std::string_view meanings = "\"\\\n\t\r";
        const auto letter = ++i < line.size() ? letters.find(line[i]) : std::string_view::npos;
        if (letter == std::string_view::npos) {
            throw Fault{"an escape other than \\\" \\\\ \\n \\t \\r"};
        }
        text += meanings[letter];
    }
    throw Fault{"the closing quote is missing"};
}

/// Gathers the lines of one entry after another.
class Reader {
public:
    void read(std::string_view line) {
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        const auto start = line.find_first_not_of(blanks);
        if (start == std::string_view::npos) {
            return;
        }
        line = line.substr(start, line.find_last_not_of(blanks) + 1 - start);
        if (line.front() == '#') {
            readComment(line);
        } else if (line.front() == '"') {
            continued() += unquoted(line);
        } else {
            readKeyword(line);
        }
    }

    /// The translations so far; the last entry must be complete.
    std::map<std::string, std::string, std::less<>> finish() {
        finishEntry();
        if (keys_.empty()) {
            throw Fault{"there is no header"};
        }
        return std::move(translations_);
    }

private:
    void readComment(std::string_view line) {
        if (translation_) {
            finishEntry();  // the comments of an entry stand before it
        } else if (key_) {
            throw Fault{"a comment between msgid and msgstr"};
        }
        if (line.starts_with("#~")) {
            isFuzzy_ = false;  // it was the obsolete entry that was
        } else if (line.starts_with("#,") && line.find("fuzzy") != std::string_view::npos) {
            isFuzzy_ = true;
        }
    }

    void readKeyword(std::string_view line) {
        const auto end = line.find_first_of(blanks);
        const auto keyword = line.substr(0, end);
        if (keyword == "msgid") {
            finishEntry();
            key_ = unquoted(argument(line, end));
        } else if (keyword == "msgstr") {
            if (!key_ || translation_) {
                throw Fault{"a msgstr without its msgid"};
            }
            translation_ = unquoted(argument(line, end));
            if (!keys_.insert(*key_).second) {
                throw Fault{"the same msgid a second time"};
            }
            if (keys_.size() == 1 && !key_->empty()) {
                throw Fault{"the header, an empty msgid, must come first"};
            }
        } else {
            throw Fault{"only msgid and msgstr are known"};
        }
    }

    static std::string_view argument(std::string_view line, std::size_t end) {
        const auto start = line.find_first_not_of(blanks, end);
        return start == std::string_view::npos ? std::string_view() : line.substr(start);
    }

    std::string& continued() {
        if (translation_) {
            return *translation_;
        }
        if (!key_) {
            throw Fault{"a string that belongs to no entry"};
        }
        return *key_;
    }

    void finishEntry() {
        if (key_ && !translation_) {
            throw Fault{"a msgid without its msgstr"};
        }
        if (!key_) {
            return;
        }
        if (key_->empty()) {
            checkHeader(*translation_);
        } else if (!isFuzzy_ && !translation_->empty()) {
            translations_.emplace(*std::move(key_), *std::move(translation_));
        }
        key_.reset();
        translation_.reset();
        isFuzzy_ = false;
    }

    static void checkHeader(const std::string& header) {
        if (("\n" + header).find("\nContent-Type: text/plain; charset=UTF-8\n") == std::string::npos) {
            throw Fault{"the header must say \"Content-Type: text/plain; charset=UTF-8\""};
        }
    }

    std::optional<std::string> key_;
    std::optional<std::string> translation_;
    bool isFuzzy_ = false;
    std::set<std::string> keys_;
    std::map<std::string, std::string, std::less<>> translations_;
};

}  // namespace

Base::Result<StringTable> StringTable::parse(std::string_view text) {
    std::size_t number = 1;
    try {
        Reader reader;
        while (!text.empty()) {
            const auto end = text.find('\n');
            const auto line = text.substr(0, end);
            if (!Base::UTF8::isWellFormed(line) || line.find('\0') != std::string_view::npos) {
                throw Fault{"this is no UTF-8 text"};
            }
            reader.read(line);
            if (end == std::string_view::npos) {
                break;
            }
            text.remove_prefix(end + 1);
            ++number;
        }
        StringTable table;
        table.translations_ = reader.finish();
        return table;
    } catch (const Fault& fault) {
        return Base::failure<StringTable>(
            Base::DescribedError("Line " + std::to_string(number) + ": " + std::string(fault.what)));
    }
}

const std::string* StringTable::find(std::string_view key) const {
    const auto found = translations_.find(key);
    return found != translations_.end() ? &found->second : nullptr;
}

}  // namespace RemoteCoding

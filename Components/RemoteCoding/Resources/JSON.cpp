#include "Components/RemoteCoding/Resources/JSON.hpp"

#include "Base/Error.hpp"
#include "Base/UTF8.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr int deepest = 32;

/// What is wrong at the place that the parser has reached.
struct Fault {
    std::string_view what;
};

bool isDigit(char character) { return character >= '0' && character <= '9'; }

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    JSONValue document() {
        JSONValue value = this->value();
        if (skipBlanks(); position_ != text_.size()) {
            throw Fault{"something follows the value"};
        }
        return value;
    }

    [[nodiscard]] std::size_t line() const {
        const auto read = text_.substr(0, position_);
        return static_cast<std::size_t>(std::count(read.begin(), read.end(), '\n')) + 1;
    }

private:
    JSONValue value() {
        skipBlanks();
        switch (peek()) {
        case '{':
            return {object()};
        case '[':
            return {array()};
        case '"':
            return {string()};
        case 't':
            return {literal("true", true)};
        case 'f':
            return {literal("false", false)};
        case 'n':
            return {literal("null", nullptr)};
        default:
            return {number()};
        }
    }

    template <typename Value>
    Value literal(std::string_view spelling, Value value) {
        if (!text_.substr(position_).starts_with(spelling)) {
            throw Fault{"a value is expected"};
        }
        position_ += spelling.size();
        return value;
    }

    JSONObject object() {
        JSONObject members;
        list('}', [&] {
            if (skipBlanks(); peek() != '"') {
                throw Fault{"a name is expected"};
            }
            std::string name = string();
            if (skipBlanks(); !take(':')) {
                throw Fault{"a colon is expected"};
            }
            members.push_back({std::move(name), value()});
        });
        std::vector<std::string_view> names;
        names.reserve(members.size());
        for (const auto& member : members) {
            names.emplace_back(member.name);
        }
        std::sort(names.begin(), names.end());
        if (std::adjacent_find(names.begin(), names.end()) != names.end()) {
            throw Fault{"an object ends that has the same name twice"};
        }
        return members;
    }

    JSONArray array() {
        JSONArray elements;
        list(']', [&] { elements.push_back(value()); });
        return elements;
    }

    /// From the opening bracket to the closing one.
    template <typename ReadElement>
    void list(char closing, ReadElement readElement) {
        if (++depth_ > deepest) {
            throw Fault{"the nesting is too deep"};
        }
        ++position_;
        if (skipBlanks(); !take(closing)) {
            do {
                readElement();
                skipBlanks();
            } while (take(','));
            if (!take(closing)) {
                throw Fault{"a comma or the closing bracket is expected"};
            }
        }
        --depth_;
    }

    std::string string() {
        ++position_;
        std::string text;
        while (!take('"')) {
            const auto [bytes, code] = Base::UTF8::first(text_.substr(position_));
            if (position_ == text_.size()) {
                throw Fault{"the closing quote is missing"};
            }
            if (bytes == 0) {
                throw Fault{"this is no UTF-8 text"};
            }
            if (code < ' ') {
                throw Fault{"a control character stands in a string"};
            }
            if (take('\\')) {
                escape(text);
            } else {
                text += text_.substr(position_, bytes);
                position_ += bytes;
            }
        }
        return text;
    }

    void escape(std::string& text) {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        if (take('u')) {
            Base::UTF8::append(text, escapedCodePoint());
        } else if (const auto found = letters.find(peek()); found != std::string_view::npos) {
            text += meanings[found];
            ++position_;
        } else {
            throw Fault{"an unknown escape"};
        }
    }

    char32_t escapedCodePoint() {
        const char32_t high = fourDigits();
        if (high < 0xD800 || high > 0xDFFF) {
            return high;
        }
        const bool isPair = high < 0xDC00 && take('\\') && take('u');
        const char32_t low = isPair ? fourDigits() : 0;
        if (low < 0xDC00 || low > 0xDFFF) {
            throw Fault{"half a surrogate pair"};
        }
        return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
    }

    char32_t fourDigits() {
        char32_t code = 0;
        for (int digit = 0; digit < 4; ++digit) {
            const char character = peek();
            const char lower = static_cast<char>(character | 0x20);
            if (!isDigit(character) && (lower < 'a' || lower > 'f')) {
                throw Fault{"four hexadecimal digits are expected"};
            }
            code = code * 16 + static_cast<char32_t>(isDigit(character) ? character - '0' : lower - 'a' + 10);
            ++position_;
        }
        return code;
    }

    JSONNumber number() {
        const auto start = position_;
        take('-');
        if (!take('0')) {
            digits("a value is expected");
        }
        if (take('.')) {
            digits("digits are expected");
        }
        if (take('e') || take('E')) {
            static_cast<void>(take('+') || take('-'));
            digits("digits are expected");
        }
        return {std::string(text_.substr(start, position_ - start))};
    }

    void digits(std::string_view complaint) {
        if (!isDigit(peek())) {
            throw Fault{complaint};
        }
        while (isDigit(peek())) {
            ++position_;
        }
    }

    void skipBlanks() { position_ = std::min(text_.find_first_not_of(" \t\n\r", position_), text_.size()); }

    /// NUL at the end of the text; a NUL in the text is allowed nowhere, so the two need no telling apart.
    [[nodiscard]] char peek() const { return position_ < text_.size() ? text_[position_] : '\0'; }

    bool take(char character) {
        if (peek() != character) {
            return false;
        }
        ++position_;
        return true;
    }

    std::string_view text_;
    std::size_t position_ = 0;
    int depth_ = 0;
};

}  // namespace

Base::Result<JSONValue> parseJSON(std::string_view text) {
    Parser parser(text);
    try {
        return parser.document();
    } catch (const Fault& fault) {
        return Base::failure<JSONValue>(
            Base::DescribedError("Line " + std::to_string(parser.line()) + ": " + std::string(fault.what)));
    }
}

}  // namespace RemoteCoding

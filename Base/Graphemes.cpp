#include "Base/Graphemes.hpp"

#include "Base/UTF8.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace Base::Graphemes {

namespace {

/// The values of Grapheme_Cluster_Break, with Extended_Pictographic, which no code point has beside one of them.
enum class Property : std::uint8_t {
    other,
    carriageReturn,
    lineFeed,
    control,
    extend,
    zeroWidthJoiner,
    regionalIndicator,
    prepend,
    spacingMark,
    hangulL,
    hangulV,
    hangulT,
    hangulLV,
    hangulLVT,
    pictographic,
};
using enum Property;

struct Range {
    char32_t first;
    char32_t last;
    Property property;
};

/// In ascending order, without overlaps.
constexpr Range table[] = {
#include "Base/GraphemeTable.inc"
};

struct CodePoint {
    std::size_t bytes;
    Property property;
};

constexpr char32_t firstHangulSyllable = 0xAC00;
constexpr char32_t lastHangulSyllable = 0xD7A3;
/// Syllables with the same leading consonant and vowel stand together, the one without a trailing consonant first.
constexpr char32_t hangulTrailingForms = 28;

Property propertyOf(char32_t code) {
    if (code >= ' ' && code <= '~') {
        return other;
    }
    if (code >= firstHangulSyllable && code <= lastHangulSyllable) {
        return (code - firstHangulSyllable) % hangulTrailingForms == 0 ? hangulLV : hangulLVT;
    }
    const auto* range = std::partition_point(std::begin(table), std::end(table),
                                             [code](const Range& each) { return each.last < code; });
    return range != std::end(table) && range->first <= code ? range->property : other;
}

/// The first code point of a text that is not empty. A byte of no well-formed sequence counts as a control character:
/// nothing joins it.
CodePoint firstCodePoint(std::string_view text) {
    const auto first = UTF8::first(text);
    return first.bytes == 0 ? CodePoint{1, control} : CodePoint{first.bytes, propertyOf(first.code)};
}

/// What rules GB11 to GB13 need to know of a character's code points, beyond the last one.
class Context {
public:
    /// Takes note of the next code point of the character.
    void add(Property property) {
        joinsPictograph_ = afterPictograph_ && property == zeroWidthJoiner;
        afterPictograph_ = property == pictographic || (afterPictograph_ && property == extend);
        oddIndicators_ = property == regionalIndicator && !oddIndicators_;
    }

    /// GB11: a pictograph, any number of Extend, a joiner.
    [[nodiscard]] bool joinsPictograph() const { return joinsPictograph_; }
    /// GB12, GB13: regional indicators pair from the first one on.
    [[nodiscard]] bool lacksIndicator() const { return oddIndicators_; }

private:
    bool afterPictograph_ = false;
    bool joinsPictograph_ = false;
    bool oddIndicators_ = false;
};

bool isControl(Property property) {
    return property == control || property == carriageReturn || property == lineFeed;
}

/// Whether `right` belongs to the character that ends in `left` so far; the names are those of the rules of UAX #29.
bool joins(Property left, Property right, const Context& context) {
    if (isControl(left) || isControl(right)) {
        return left == carriageReturn && right == lineFeed;  // GB3 to GB5
    }
    switch (right) {
    case extend:
    case zeroWidthJoiner:
    case spacingMark:
        return true;  // GB9, GB9a
    case hangulL:
    case hangulLV:
    case hangulLVT:
        return left == hangulL || left == prepend;  // GB6, GB9b
    case hangulV:
        return left == hangulL || left == hangulV || left == hangulLV || left == prepend;  // GB6, GB7, GB9b
    case hangulT:
        return left == hangulV || left == hangulT || left == hangulLV || left == hangulLVT ||
               left == prepend;  // GB7, GB8, GB9b
    case pictographic:
        return context.joinsPictograph() || left == prepend;  // GB11, GB9b
    case regionalIndicator:
        return context.lacksIndicator() || left == prepend;  // GB12, GB13, GB9b
    default:
        return left == prepend;  // GB9b
    }
}

/// The bytes of the first character of a text that is not empty.
std::size_t firstLength(std::string_view text) {
    const CodePoint first = firstCodePoint(text);
    std::size_t length = first.bytes;
    Property last = first.property;
    Context context;
    context.add(last);
    while (length < text.size()) {
        const CodePoint next = firstCodePoint(text.substr(length));
        if (!joins(last, next.property, context)) {
            break;
        }
        length += next.bytes;
        last = next.property;
        context.add(last);
    }
    return length;
}

}  // namespace

std::size_t count(std::string_view text) {
    std::size_t characters = 0;
    for (; !text.empty(); ++characters) {
        text.remove_prefix(firstLength(text));
    }
    return characters;
}

std::size_t prefixLength(std::string_view text, std::size_t characters) {
    std::size_t length = 0;
    for (; characters > 0 && length < text.size(); --characters) {
        length += firstLength(text.substr(length));
    }
    return length;
}

}  // namespace Base::Graphemes

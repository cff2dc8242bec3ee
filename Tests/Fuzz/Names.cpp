#include "Apps/CodingDesk/Text.hpp"
#include "Base/Graphemes.hpp"
#include "Base/UUID.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoNameText.hpp"
#include "Components/RemoteCoding/ViewModel/VideoName.hpp"
#include "Tests/Fuzz/Fuzz.hpp"

using namespace Base;
using namespace RemoteCoding;

static void checkCharacters(std::string_view text) {
    std::string again;
    for (auto next = UTF8::first(text); next.bytes > 0; next = UTF8::first(text.substr(again.size()))) {
        UTF8::append(again, next.code);
    }
    require(text.starts_with(again) && UTF8::isWellFormed(text) == (again == text), "text is code points");
    require(CodingDesk::firstInvalidUtf8(text).value_or(text.size()) == again.size(), "both readers agree");
    const auto count = Graphemes::count(text);
    for (std::size_t characters = 0; characters <= count; characters += 1 + count / 4) {
        const auto length = Graphemes::prefixLength(text, characters);
        require(Graphemes::count(text.substr(0, length)) == characters, "as many characters as wanted");
        require(Graphemes::count(text.substr(length)) == count - characters, "the others follow");
        require(again != text || UTF8::isWellFormed(text.substr(0, length)), "code points are not cut");
    }
}

static void checkTyped(std::string_view typed) {
    const VideoNameText name(typed), again(name.text);
    require(again.text == name.text && !again.wasCut && !again.hadForbiddenCharacters, "a name stays");
    require(name.wasCut == (Graphemes::count(typed) > Limits::videoNameCharacters), "a long name is cut");
    require(name.wasCut || name.hadForbiddenCharacters || name.text == typed, "what is allowed stays");
    require(!UTF8::isWellFormed(typed) || UTF8::isWellFormed(name.text), "text stays text");
}

static void check(std::string_view input) {
    const std::string text(input), name(videoNameFromTitle(text));
    if (text.find_first_not_of('/') != text.npos) {
        require(text.find(name) != text.npos && name.find('/') == name.npos, "a name is a part of the path");
        require(videoNameFromTitle("/Videos.d/" + text + "/") == name, "folders do not count");
        require(videoNameFromTitle(name + ".mp4") == name, "an extension does not count");
    }
    const auto uuid = UUID::parse(text);
    const auto isSame = [](char a, char b) { return a == b || (b >= 'A' && b <= 'F' && a == b + 32); };
    require(!uuid || std::ranges::equal(uuid->text(), text, isSame), "a text that is read is the UUID's");
    checkCharacters(text);
    checkTyped(text);
    checkTyped(text + text + text + text);
}

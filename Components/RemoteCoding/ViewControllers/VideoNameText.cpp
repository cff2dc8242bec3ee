#include "Components/RemoteCoding/ViewControllers/VideoNameText.hpp"

#include "Base/Graphemes.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"

namespace RemoteCoding {

// Colons and line feeds go as code points, which are single bytes of UTF-8. A line feed goes out of a CRLF too, which
// people perceive as one character: the carriage return stays.
VideoNameText::VideoNameText(std::string_view typed)
    : text(typed.substr(0, Base::Graphemes::prefixLength(typed, Limits::videoNameCharacters))),
      wasCut(text.size() < typed.size()),
      hadForbiddenCharacters(std::erase_if(text, [](char byte) { return byte == ':' || byte == '\n'; }) > 0) {
}

}  // namespace RemoteCoding

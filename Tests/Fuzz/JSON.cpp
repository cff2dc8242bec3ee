#include "Components/RemoteCoding/Resources/JSON.hpp"

#include "Tests/Fuzz/Fuzz.hpp"

static RemoteCoding::JSONValue read(std::string_view text) { return RemoteCoding::parseJSON(text).value(); }

static void check(std::string_view input) {
    // What counting brackets and quotes tells, up to a line's end within a string.
    bool inString = false, escaped = false;
    int depth = 0, deepest = 0;
    std::size_t end = 0;
    for (; end < input.size() && !(inString && input[end] == '\n'); ++end) {
        const char next = input[end];
        inString = inString != (next == '"' && !escaped);
        escaped = inString && next == '\\' && !escaped;
        depth += inString ? 0 : (next == '[' || next == '{') - (next == ']' || next == '}');
        deepest = std::max(deepest, depth);
    }
    require(wrongLine(read, input) <= wrongLine(read, input.substr(0, end)), "strings are of one line");
    if (const std::string text(input); accepts(read, input)) {
        require(Base::UTF8::isWellFormed(text) && end == text.size(), "only text is accepted");
        require(depth == 0 && deepest <= 32 && !inString, "brackets and quotes are closed");
        require(accepts(read, '[' + text + ']') == (deepest < 32), "a list of it is too deep or read");
        for (const char* more : {" 1", ",", "]", "\v", "//"}) {
            require(!accepts(read, text + more), "nothing follows");
        }
    }
}

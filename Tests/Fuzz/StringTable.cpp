#include "Components/RemoteCoding/Resources/StringTable.hpp"

#include "Tests/Fuzz/Fuzz.hpp"

static RemoteCoding::StringTable read(std::string_view text) {
    return RemoteCoding::StringTable::parse(text).value();
}

static std::string line(const std::string& keyword, std::string_view text) {
    std::string result = keyword + " \"";
    for (const char character : text) {
        const auto escape = std::string_view("\"\\\n\t\r").find(character);
        result += escape < 5 ? std::string("\\") + "\"\\ntr"[escape] : std::string(1, character);
    }
    return result + "\"\n";
}

static void check(std::string_view input) {
    const auto header = line("msgid", "") + line("msgstr", "Content-Type: text/plain; charset=UTF-8\n");
    const bool isText = Base::UTF8::isWellFormed(input) && input.find('\0') == input.npos;
    if (accepts(read, input)) {
        require(isText, "only text is accepted");
        for (const auto& more : {header, line("msgid", "new"), line("\"\"", "")}) {
            require(!accepts(read, std::string(input) + '\n' + more), "keys stand once, and whole");
        }
    }
    const auto table = header + line("msgid", input) + line("msgstr", input);
    require(accepts(read, table) == (isText && !input.empty()), "a table of any text is read");
    require(!accepts(read, table) || *read(table).find(input) == input, "what was written is found");
}

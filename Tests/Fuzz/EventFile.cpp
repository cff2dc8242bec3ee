#include "Apps/CodingDesk/EventFile.hpp"

#include "Tests/Fuzz/Fuzz.hpp"

#include <cmath>
#include <iomanip>

static std::vector<CodingDesk::CodedEvent> read(std::string_view text) {
    try {
        return CodingDesk::parseEvents(text);
    } catch (const CodingDesk::FileError& error) {
        require(Base::UTF8::isWellFormed(error.what()), "what is wrong can be shown");
        throw std::runtime_error("Line " + std::to_string(error.line()));
    }
}

static void check(std::string_view input) {
    std::ostringstream any, text;
    any << "code,start,end\n" << std::quoted(input, '"', '"') << ",1,2";
    const bool isCode = Base::UTF8::isWellFormed(input) && input.find_first_not_of(" \t") != input.npos;
    require(accepts(read, any.str()) == isCode, "a code of any text is read");
    if (accepts(read, input)) {
        text << "start,note,code,end" << std::setprecision(17);
        for (const auto& [code, start, end] : read(input)) {
            require(start >= 0 && end >= start && std::isfinite(end) && !code.empty(), "a clip is whole");
            text << "\r\n" << start << ",\"\"," << std::quoted(code, '"', '"') << ',' << end;
        }
        require(read(text.str()) == read(input) && !read(input).empty(), "what was written is read back");
        require(!accepts(read, text.str() + "\n1"), "records are whole");
    }
}

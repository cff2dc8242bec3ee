#include "Base/Error.hpp"
#include "Components/RemoteCoding/Resources/JSON.hpp"
#include "Components/RemoteCoding/Resources/LayoutReader.hpp"
#include "Components/RemoteCoding/Resources/StringTable.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace RemoteCoding;
using namespace std::string_view_literals;

/// Three lines, as every file needs them.
const std::string header = "msgid \"\"\nmsgstr \"\"\n\"Content-Type: text/plain; charset=UTF-8\\n\"\n";

std::string found(const Base::Result<StringTable>& table, std::string_view key) {
    const auto* text = table.value().find(key);
    return text != nullptr ? *text : "-";
}

TEST(StringTable, ReadsWhatIsTranslatedAndNothingElse) {
    const auto table = StringTable::parse("\r\n# Head\r\n" + header + R"(
msgid "End "
	"Session"
  msgstr   "Beenden\n"
  "\t\"jetzt\"\\\r"
#, c-format, fuzzy
msgid "Perhaps"
msgstr "Vielleicht"
msgid "Later"
msgstr ""
#, fuzzy
#~ msgid "Old"
msgid "You’ll"
msgstr "😀")");

    EXPECT_EQ(found(table, "End Session"), "Beenden\n\t\"jetzt\"\\\r");
    EXPECT_EQ(found(table, "You’ll"), "😀");
    EXPECT_EQ(found(table, "") + found(table, "Perhaps") + found(table, "Later"), "---");
}

TEST(StringTable, RefusesAFileThatIsNotWellFormedAndNamesTheLine) {
    const std::pair<std::string, std::string_view> table[] = {
        {"# nothing else\n", "2: there is no header"},
        {"msgid \"a\"\nmsgstr \"b\"\n", "2: the header"},
        {"msgid \"\"\nmsgstr \"\\nContent-Type: text/plain; charset=ISO-8859-1\\n\"", "2: the header"},
        {header + header, "5: the same msgid"},
        {header + "msgid \"a\"\nmsgid \"b\"\n", "5: a msgid without"},
        {header + "msgid \"a\"\n# comment\nmsgstr \"b\"\n", "5: a comment between"},
        {header + "msgstr \"b\"\nmsgstr \"c\"\n", "4: a msgstr without"},
        {header + "# comment\n\"lost\"\n", "5: a string that belongs to no entry"},
        {header + "msgctxt \"menu\"\n", "4: only msgid"},
        {header + "msgid \"a\"\nmsgid_plural \"as\"\n", "5: only msgid"},
        {"\xEF\xBB\xBF" + header, "1: only msgid"},
        {header + "msgid \"\n", "4: a quoted string"},
        {header + "msgid \"a\\\"\n\"\n", "4: the closing quote"},
        {header + "msgid \"a\" b\n", "4: something follows"},
        {header + "msgid \"a\\x41\"\n", "4: an escape"},
        {header + "msgid \"\xE2\x80\"\n", "4: this is no UTF-8"},
        {header + std::string("# a\0b\n"sv), "4: this is no UTF-8"},
    };
    for (const auto& [text, complaint] : table) {
        const auto message = Base::describe(StringTable::parse(text).error());
        EXPECT_TRUE(message.starts_with("Line " + std::string(complaint))) << text << "\n-> " << message;
    }
}

TEST(JSON, ReadsEveryKindOfValue) {
    const auto value =
        parseJSON(" {\"a\":[null,true,false,-0.5e+10,{}],\t\"\":\r\n\"\\\"\\\\\\/\\b\\f\\n\\r\\t"
                  "\\u00e9\\u20AC\\ud83D\\uDe00 é😀\\u0000.\"} ")
            .value();
    const auto& object = *value.as<JSONObject>();
    const auto& list = *object.at(0).value.as<JSONArray>();
    EXPECT_TRUE(list.at(0).as<std::nullptr_t>() && *list.at(1).as<bool>() && !*list.at(2).as<bool>());
    EXPECT_EQ(list.at(3).as<JSONNumber>()->spelling, "-0.5e+10");
    EXPECT_EQ(*object.at(1).value.as<std::string>(), "\"\\/\b\f\n\r\té€😀 é😀\0."sv);
}

TEST(JSON, RefusesWhatTheStandardDoesNotAllow) {
    std::istringstream words(
        R"({ [ ] [1 [1,] [,1] [1} {,} {"a"} {"a":} {"a":1,} {a:1} {1:1} {"a":1,"b":2,"a":3}
        {"a":1,"\u0061":2} null, nul True +1 01 - -a .5 1. 1e 1e+ 0x1 NaN 'a' " "a "\ "\" "\x" "\u12g4" "\u123
        "\ud800" "\udc00\udc00" "\ud800\u0041" "\ud800\n" //a)");
    std::vector<std::string> texts{std::istream_iterator<std::string>(words), {}};
    for (const auto text :
         {""sv, " "sv, "1 1"sv, "\v1"sv, "\"\n\""sv, "\"\0\""sv, "\"\\\0\""sv, "1\0"sv, "\"\x80\""sv,
          "\"\xC1\xBF\""sv, "\"\xED\xA0\x80\""sv, "\"\xE2\x82\""sv, "\xEF\xBB\xBF{}"sv}) {
        texts.emplace_back(text);
    }
    for (const auto& text : texts) {
        EXPECT_FALSE(parseJSON(text).succeeded()) << text;
    }
    EXPECT_EQ(Base::describe(parseJSON("{\n\"a\":\n[1,\n").error()), "Line 4: a value is expected");
    const std::string deep = std::string(31, '[') + std::string(31, ']');
    EXPECT_TRUE(parseJSON("[" + deep + "," + deep + "]").succeeded());
    EXPECT_FALSE(parseJSON(std::string(1'000'000, '[')).succeeded());
}

TEST(WindowLayout, NamesThePlaceThatIsWrong) {
    const std::pair<std::string, std::string> table[] = {
        {R"({"kind": "button", "outlet": "a"}, {"kind": "label"})", ""},
        {R"({"kind": "label"}, 1)", "controls[1] is no object"},
        {R"({"kind": "label", "colour": "red"})", "controls[0].colour is unknown"},
        {R"({"kind": "slider"})", "controls[0].kind is none of those known"},
        {R"({"kind": "label", "isEnabled": "no"})", "controls[0].isEnabled is of the wrong type"},
        {R"({"kind": "label", "title": {"text": "Team"}})", "controls[0].title.comment is missing"},
        {R"({"kind": "tableView"})", "controls[0].columns is missing"},
        {R"({"kind": "tableView", "columns": [{}]})", "controls[0].columns[0].identifier is missing"},
        {R"({"kind": "label", "outlet": "a"}, {"kind": "button", "outlet": "a"})",
         "controls[1].outlet is taken"},
    };
    for (const auto& [controls, complaint] : table) {
        const auto layout = readWindowLayout(R"({"name": "W", "controls": [)" + controls + "]}");
        EXPECT_EQ(Base::describe(layout.error()), complaint);
    }
}

}  // namespace

#include "Base/URL.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Base::URL;
using namespace std::string_view_literals;

/// The components one after the other, "-" for each that is absent.
std::string components(const URL& url) {
    const auto shown = [](const auto& part) { return part ? '"' + std::string(*part) + '"' : "-"; };
    return std::string(url.scheme()) + ' ' + shown(url.userInfo()) + ' ' + shown(url.host()) + ' ' +
           (url.port() ? std::to_string(*url.port()) : "-") + " \"" + std::string(url.path()) + "\" " +
           shown(url.query()) + ' ' + shown(url.fragment());
}

TEST(URL, GivesTheComponentsAndKeepsTheText) {
    const std::pair<std::string, std::string> table[] = {
        // The examples of RFC 3986, sections 1.1.2 and 3, some shorter.
        {"ldap://[2001:db8::7]/c=GB?one?two", R"(ldap - "[2001:db8::7]" - "/c=GB" "one?two" -)"},
        {"telnet://192.0.2.16:80/", R"(telnet - "192.0.2.16" 80 "/" - -)"},
        {"mailto:John.Doe@example.com", R"(mailto - - - "John.Doe@example.com" - -)"},
        {"foo://example.com:8042?name=ferret#nose", R"(foo - "example.com" 8042 "" "name=ferret" "nose")"},
        // Empty is not absent, but for a port.
        {"file:///clip", R"(file - "" - "/clip" - -)"},
        {"x:?#", R"(x - - - "" "" "")"},
        {"x://@:", R"(x "" "" - "" - -)"},
        {"http://h#f?g", R"(http - "h" - "" - "f?g")"},
        // Delimiters where they delimit nothing any more.
        {"x://u:p:%40@h:0/a:b@c//d?/?:@#/?:@", R"(x "u:p:%40" "h" 0 "/a:b@c//d" "/?:@" "/?:@")"},
        {"x:a//b", R"(x - - - "a//b" - -)"},
        // Nothing is decoded, folded or shortened; ports by their value.
        {"HTTPS://EXAMPLE.com:000443/a/../%7e%00", R"(HTTPS - "EXAMPLE.com" 443 "/a/../%7e%00" - -)"},
        {"a+-.9://~-._!$&'()*+,;=:65535", R"(a+-.9 - "~-._!$&'()*+,;=" 65535 "" - -)"},
        {"x://999.1.1.1/", R"(x - "999.1.1.1" - "/" - -)"},  // a name, as no number is
    };

    for (const auto& [text, expected] : table) {
        auto url = URL::parse(text);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->text(), text);
        const URL copy = *url;
        const URL moved = std::move(*url);
        url.reset();
        EXPECT_EQ(components(copy), expected) << "a copy has its own text";
        EXPECT_EQ(components(moved), expected) << "so has a moved one, however short";
    }
}

/// The words of a text.
std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(URL, RefusesWhatIsNone) {
    for (const auto& text : words(
             // No scheme, or none that could be; brackets and number signs are delimiters.
             ": //example.com/a /a/b video.m3u8 ?q #f ://h 1x://h -x:a h%74tp://h x_y:a \u00E9://h http//h "
             "?x://h a/b:c http://h/[a] http://h/?a[]=1 http://h/#[1] http://h/#a#b "
             // A percent-encoding, the authority, the port.
             "http://h/% http://h/%4 http://h/%4g http://h/%%41 http://h/?% http://h/#%2 http://%/ "
             "http://%4 http://u%1@h/ http://h/%4\u0661 x:% "
             "http://a@b@c/ http://u[@h/ http://h]/ http://h[/ http://[ http://] http://[]/ http://a:b:80/ "
             "http://u@/ http: http:a http:/a http:///a HTTPS://:80/ https://?q "
             "http://h:x/ http://h:-1/ http://h:+1/ http://h:80a/ http://h:8%30/ http://h:65536/ "
             "http://h:18446744073709551696/ http://[::1]80/ http://[::1]:a/ http://[::1]:80:80/")) {
        EXPECT_FALSE(URL::parse(text)) << text;
    }
    EXPECT_FALSE(URL::parse(""));
    EXPECT_FALSE(URL::parse("http://h:" + std::string(1'000'000, '9')));
    EXPECT_FALSE(URL::parse("http://[" + std::string(1'000'000, ':') + "]/"));
    const std::string complete = "http://u:p@[1:2::3.4.5.6]:80/%41?%42#%43";
    ASSERT_TRUE(URL::parse(complete));
    for (const char wrong : " \t\r\n\0\x01\x7F\"<>\\^`{|}\x80\xC3\xFF"sv) {
        for (std::size_t place = 0; place <= complete.size(); ++place) {
            EXPECT_FALSE(URL::parse(std::string(complete).insert(place, 1, wrong))) << wrong << place;
        }
    }
}

TEST(URL, KnowsTheAddressesOfIPv6) {
    for (const auto& address : words(
             ":: ::1 1:: 1:2:3:4:5:6:7:8 1:2:3:4:5:6:7:: ::2:3:4:5:6:7:8 1::8 1:2:3::5:6:7:8 ABCD:ef01::0000 "
             "::ffff:192.0.2.1 1:2:3:4:5:6:255.249.199.0 1::5:6:0.0.0.0 v7.a VfF.~:")) {
        EXPECT_TRUE(URL::parse("http://u@[" + address + "]:80/")) << address;
    }
    for (const auto& address :
         words(": ::: 1 1: :1 1:2:3:4:5:6:7 1:2:3:4:5:6:7:8:9 1:2:3:4:5:6:7:8:: 1:2:3:4::5:6:7:8 "
               "::1:2:3:4:5:6:7:8 1::2::3 1:::2 :1::2 1::2: 12345:: ::g ::-1 192.0.2.1 ::256.0.0.1 ::1.2.3 "
               "::1.2.3.4.5 ::01.2.3.4 ::1.2.3.4:5 1.2.3.4:: ::1..2.3 1:2:3:4:5:6:7:1.2.3.4 ::1%25eth0 "
               "::1%eth0 ::1/ [::1] v.a v1. v1 vg.a v1.%41 x1.a h")) {
        EXPECT_FALSE(URL::parse("http://[" + address + "]/")) << address;
    }
}

}  // namespace

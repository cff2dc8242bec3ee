#include "Components/RemoteCoding/Component/RemoteCodingComponent.StreamAddresses.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "Tests/Fuzz/Fuzz.hpp"

using Base::URL;

static void checkURL(const std::string& text, const URL& url) {
    const auto part = [](const char* before, const auto& view, const char* after = "") {
        return view ? before + std::string(*view) + after : std::string();
    };
    const auto head = std::string(url.scheme()) + (url.host() ? "://" : ":") + part("", url.userInfo(), "@") +
                      part("", url.host());
    const auto tail = std::string(url.path()) + part("?", url.query()) + part("#", url.fragment());
    const auto port = text.substr(head.size(), text.size() - head.size() - tail.size());
    require(head + port + tail == text && (port.empty() || port[0] == ':'), "it is its parts");
    require(url.port() ? std::stoi(port.substr(1)) == *url.port() : port.size() < 2, "the port");
    for (const std::string more : {" ", "%", "%4", "[", "\"", "\n", "\x80"}) {
        require(!URL::parse(text + more) && !URL::parse(more + text), "what is not allowed is encoded");
    }
}

/// The input's lines are the addresses of a video's streams.
static void check(std::string_view input) {
    std::vector<std::string> ids;
    RemoteCoding::VideoItem video("Ready", std::vector<RemoteCoding::VideoStream>());
    std::istringstream lines{std::string(input)};
    for (std::string line; std::getline(lines, line);) {
        video.streams->emplace_back(ids.emplace_back(std::to_string(ids.size())), line);
    }
    ReferenceHost::LogManager log;
    const auto urls = RemoteCoding::StreamAddresses::streamURLsOf(video, ids, log);
    for (const auto& [id, text] : *video.streams) {
        const auto url = URL::parse(*text);
        require(url.has_value() == urls.contains(id), "a stream has its address");
        url ? checkURL(*text, urls.at(id)) : void();
    }
}

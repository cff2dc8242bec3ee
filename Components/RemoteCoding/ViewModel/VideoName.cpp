#include "Components/RemoteCoding/ViewModel/VideoName.hpp"

namespace RemoteCoding {

namespace {

constexpr auto nowhere = std::string_view::npos;

std::string_view lastPathComponent(std::string_view path) {
    const auto end = path.find_last_not_of('/');
    if (end == nowhere) {
        return path.substr(0, 1);
    }
    path = path.substr(0, end + 1);
    const auto slash = path.rfind('/');
    return slash == nowhere ? path : path.substr(slash + 1);
}

std::string_view withoutExtension(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == nowhere || dot == 0) {
        return name;
    }
    const auto extension = name.substr(dot + 1);
    return extension.empty() || extension.find(' ') != nowhere ? name : name.substr(0, dot);
}

}  // namespace

std::string_view videoNameFromTitle(std::string_view title) {
    return withoutExtension(lastPathComponent(title));
}

}  // namespace RemoteCoding

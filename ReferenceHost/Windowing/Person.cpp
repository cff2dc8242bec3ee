#include "ReferenceHost/Windowing/Person.hpp"

#include "ReferenceHost/Windowing/WindowText.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace ReferenceHost {

std::vector<std::string> Person::windowTitles() const {
    std::vector<std::string> titles;
    std::ranges::transform(toolkit_.visibleWindows(), std::back_inserter(titles), &HeadlessWindow::title);
    return titles;
}

bool Person::sees(const std::string& windowTitle) const {
    return std::ranges::any_of(toolkit_.visibleWindows(),
                               [&](const auto& window) { return window->title() == windowTitle; });
}

HeadlessWindowing::Window Person::find(const std::string& title) const {
    const auto& windows = toolkit_.visibleWindows();
    const auto found =
        std::ranges::find_if(windows, [&](const auto& window) { return window->title() == title; });
    if (found == windows.end()) {
        throw std::logic_error("There is no window \"" + title + "\". On the screen:\n" + screen());
    }
    return *found;
}

WindowOnScreen Person::window(const std::string& title) const { return WindowOnScreen(find(title)); }

std::string Person::screen() const { return screenText(toolkit_); }

std::string Person::textOf(const std::string& windowTitle) const { return windowText(*find(windowTitle)); }

}  // namespace ReferenceHost

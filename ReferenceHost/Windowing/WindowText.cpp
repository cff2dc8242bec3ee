#include "ReferenceHost/Windowing/WindowText.hpp"

#include "Base/Graphemes.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"
#include "ReferenceHost/Windowing/LoginCoordinator.hpp"
#include "ReferenceHost/Windowing/TableView.hpp"

#include <algorithm>
#include <memory>
#include <sstream>
#include <utility>

namespace ReferenceHost {

namespace {

using Kind = Control::Kind;
using Lines = std::vector<std::string>;

constexpr std::size_t frameWidth = 76;

std::string padded(std::string text, std::size_t width) {
    const std::size_t length = Base::Graphemes::count(text);
    text.append(width > length ? width - length : 0, ' ');
    return text;
}

/// Trailing spaces go.
std::string framed(const std::string& title, const Lines& lines) {
    const std::string head = ".- " + title + ' ';
    const std::size_t length = Base::Graphemes::count(head);
    std::string text = head + std::string(frameWidth > length ? frameWidth - length : 0, '-') + '\n';
    for (const std::string& line : lines) {
        std::string whole = "| " + line;
        whole.erase(whole.find_last_not_of(' ') + 1);
        text += whole + '\n';
    }
    return text + '\'' + std::string(frameWidth - 1, '-') + '\n';
}

/// Broken between words.
Lines wrapped(const std::string& text) {
    Lines lines;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (lines.empty() ||
            Base::Graphemes::count(lines.back()) + 1 + Base::Graphemes::count(word) > frameWidth - 2) {
            lines.push_back(word);
        } else {
            lines.back() += ' ' + word;
        }
    }
    return lines;
}

std::string cellText(const TableView::Cell& cell) {
    if (const auto checkBox = std::dynamic_pointer_cast<CheckBox>(cell)) {
        return checkBox->isOn() ? "[x]" : "[ ]";
    }
    const auto view = std::dynamic_pointer_cast<TableCellView>(cell);
    const auto field = view ? view->textField() : nullptr;
    return field ? field->text() : std::string();
}

Lines tableLines(TableView& table) {
    auto grid = tableTexts(table);
    std::vector<std::string> headings;
    std::ranges::transform(table.layout().columns, std::back_inserter(headings),
                           &RemoteCoding::WindowLayoutColumn::title);
    const bool hasHeadings = std::ranges::any_of(headings, [](const auto& text) { return !text.empty(); });
    if (hasHeadings) {
        grid.insert(grid.begin(), headings);
    }
    std::vector<std::size_t> widths(headings.size());
    for (const auto& row : grid) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], Base::Graphemes::count(row[column]));
        }
    }
    Lines lines;
    for (std::size_t row = 0; row < grid.size(); ++row) {
        const bool isSelected = table.selectedRow() >= 0 &&
                                row == static_cast<std::size_t>(table.selectedRow()) + (hasHeadings ? 1 : 0);
        std::string line = isSelected ? "> " : "  ";
        for (std::size_t column = 0; column < grid[row].size(); ++column) {
            line += padded(grid[row][column], widths[column]) + "  ";
        }
        lines.push_back(line);
    }
    if (lines.size() == (hasHeadings ? 1 : 0)) {
        lines.emplace_back("  (empty)");
    }
    return lines;
}

std::string popUpText(const PopUpButton& popUp) {
    if (!popUp.selectedItem()) {
        return popUp.isEnabled() ? "< >" : "( )";
    }
    std::string text;
    for (std::size_t index = 0; index < popUp.items().size(); ++index) {
        const std::string& title = popUp.items()[index].title;
        text += index == 0 ? "" : "  ";
        if (index != popUp.selectedIndex()) {
            text += title;
        } else {
            text += popUp.isEnabled() ? "< " + title + " >" : "( " + title + " )";
        }
    }
    return text;
}

Lines valueLines(Control& control) {
    if (auto* table = dynamic_cast<TableView*>(&control)) {
        return tableLines(*table);
    }
    if (const auto* popUp = dynamic_cast<const PopUpButton*>(&control)) {
        return {popUpText(*popUp)};
    }
    return {dynamic_cast<const TextField&>(control).text()};
}

std::string buttonText(const Control& button) {
    return button.isEnabled() ? "[ " + button.layout().title + " ]" : "( " + button.layout().title + " )";
}

/// Whether the control is a label that says no more than what the control after it is called.
bool onlyNamesTheNext(const HeadlessWindow& window, std::size_t index) {
    const auto& controls = window.controls();
    return controls[index]->layout().kind == Kind::label && index + 1 < controls.size() &&
           controls[index + 1]->layout().title == dynamic_cast<const TextField&>(*controls[index]).text();
}

Lines controlLines(const HeadlessWindow& window) {
    std::size_t nameWidth = 0;
    for (const auto& control : window.controls()) {
        if (control->layout().kind != Kind::label && control->layout().kind != Kind::button) {
            nameWidth = std::max(nameWidth, Base::Graphemes::count(control->layout().title) + 2);
        }
    }
    Lines lines;
    std::string buttons;
    for (std::size_t index = 0; index < window.controls().size(); ++index) {
        const auto& control = window.controls()[index];
        const std::string& title = control->layout().title;
        if (onlyNamesTheNext(window, index)) {
            continue;
        }
        if (control->layout().kind == Kind::button) {
            buttons += (buttons.empty() ? "" : "  ") + buttonText(*control);
        } else if (control->layout().kind == Kind::label) {
            lines.push_back(dynamic_cast<const TextField&>(*control).text());
        } else {
            std::string name = title + ": ";
            for (const std::string& value : valueLines(*control)) {
                lines.push_back(padded(std::exchange(name, {}), nameWidth) + value);
            }
        }
    }
    if (!buttons.empty()) {
        lines.push_back(padded({}, nameWidth) + buttons);
    }
    return lines;
}

}  // namespace

std::vector<std::vector<std::string>> tableTexts(TableView& table) {
    std::vector<std::vector<std::string>> texts;
    for (const auto& row : table.drawnRows()) {
        std::ranges::transform(row, std::back_inserter(texts.emplace_back()), cellText);
    }
    return texts;
}

std::string windowText(const HeadlessWindow& window) {
    return framed(window.title(), window.signIn() ? Lines{"[ Sign In ]  [ Cancel ]"} : controlLines(window));
}

std::string alertText(const RemoteCoding::Alert& alert, const std::string& kind) {
    Lines lines = wrapped(alert.messageText);
    std::ranges::move(wrapped(alert.informativeText), std::back_inserter(lines));
    std::string buttons;
    for (const RemoteCoding::AlertButton& button : alert.buttons) {
        buttons += "[ " + button.title + (button.isDestructive ? " ! ]  " : " ]  ");
    }
    lines.push_back(buttons.empty() ? "[ OK ]" : buttons);
    static constexpr const char* styles[] = {"", " (informational)", " (critical)"};
    return framed(kind + styles[static_cast<std::size_t>(alert.style)], lines);
}

std::string screenText(HeadlessWindowing& toolkit) {
    std::string text;
    if (const auto alert = toolkit.alerts().shown()) {
        text += alertText(*alert);
    }
    for (const auto& window : toolkit.visibleWindows()) {
        if (window->sheet() != nullptr) {
            text += alertText(*window->sheet(), "Sheet on " + window->title());
        }
        text += windowText(*window);
    }
    return text;
}

}  // namespace ReferenceHost

#include "ReferenceHost/Windowing/WindowOnScreen.hpp"

#include "ReferenceHost/Windowing/LoginCoordinator.hpp"
#include "ReferenceHost/Windowing/TableView.hpp"
#include "ReferenceHost/Windowing/WindowText.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace ReferenceHost {

// ---- what can be done at all ----

void WindowOnScreen::cannot(const std::string& what) const {
    const auto toolkit = window_->site_->toolkit.lock();
    throw std::logic_error("Nobody can " + what + ". On the screen:\n" +
                           (toolkit ? screenText(*toolkit) : "nothing"));
}

void WindowOnScreen::expectOpen() const {
    if (!window_->isVisible()) {
        cannot("see the window \"" + title() + "\", which is closed");
    }
}

void WindowOnScreen::expectNotBehindAlert(const std::string& deed) const {
    expectOpen();
    const auto toolkit = window_->site_->toolkit.lock();
    if (!toolkit->isOnMainThread()) {
        cannot(deed + " off the main thread");
    }
    if (toolkit->alerts().shown()) {
        cannot(deed + " behind an alert");
    }
}

void WindowOnScreen::expectUsable(const std::string& deed) const {
    expectNotBehindAlert(deed);
    if (window_->sheet() != nullptr) {
        cannot(deed + " under a sheet");
    }
}

template <typename Kind>
std::shared_ptr<Kind> WindowOnScreen::find(const std::string& title) const {
    expectOpen();
    std::shared_ptr<Kind> label;  // which often stands beside the control that is called the same
    for (const auto& control : window_->controls()) {
        auto found = std::dynamic_pointer_cast<Kind>(control);
        if (!found || control->layout().title != title) {
            continue;
        }
        if (control->layout().kind != Control::Kind::label) {
            return found;
        }
        label = std::move(found);
    }
    if (label) {
        return label;
    }
    cannot("find \"" + title + "\" in the window \"" + window_->title() + "\"");
}

template <typename Kind>
std::shared_ptr<Kind> WindowOnScreen::use(const std::string& title) const {
    expectUsable("use \"" + title + '"');
    if (asksToSignIn()) {
        cannot("use \"" + title + "\" before signing in");
    }
    auto control = find<Kind>(title);
    if (!control->isEnabled()) {
        cannot("use \"" + title + "\", which is disabled");
    }
    return control;
}

// ---- what there is to see ----

bool WindowOnScreen::has(const std::string& control) const {
    expectOpen();
    return std::ranges::any_of(window_->controls(),
                               [&](const auto& present) { return present->layout().title == control; });
}

bool WindowOnScreen::isEnabled(const std::string& control) const {
    return find<Control>(control)->isEnabled();
}

std::string WindowOnScreen::textOf(const std::string& field) const { return find<TextField>(field)->text(); }

std::vector<std::string> WindowOnScreen::items(const std::string& popUp) const {
    std::vector<std::string> titles;
    std::ranges::transform(find<PopUpButton>(popUp)->items(), std::back_inserter(titles),
                           &RemoteCoding::PopUpItem::title);
    return titles;
}

std::optional<std::string> WindowOnScreen::selectedItem(const std::string& popUp) const {
    const auto item = find<PopUpButton>(popUp)->selectedItem();
    return item ? std::optional(item->title) : std::nullopt;
}

std::vector<std::vector<std::string>> WindowOnScreen::rows(const std::string& table) const {
    return tableTexts(*find<TableView>(table));
}

std::optional<std::size_t> WindowOnScreen::selectedRow(const std::string& table) const {
    const auto view = find<TableView>(table);
    (void)view->drawnRows();
    const std::int64_t row = view->selectedRow();
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

std::optional<RemoteCoding::Alert> WindowOnScreen::sheet() const {
    expectOpen();
    return window_->sheet() != nullptr ? std::optional(*window_->sheet()) : std::nullopt;
}

bool WindowOnScreen::asksToSignIn() const {
    expectOpen();
    return window_->signIn() != nullptr;
}

// ---- what its user does ----

void WindowOnScreen::click(const std::string& button) { use<Button>(button)->press(); }

void WindowOnScreen::pressReturn() { pressMarked(&RemoteCoding::WindowLayoutControl::isDefault, "Return"); }

void WindowOnScreen::pressEscape() { pressMarked(&RemoteCoding::WindowLayoutControl::isCancel, "Escape"); }

void WindowOnScreen::pressMarked(bool RemoteCoding::WindowLayoutControl::* mark, const char* key) {
    expectUsable(std::string("press ") + key);
    for (const auto& control : window_->controls()) {
        if (control->layout().*mark) {
            click(control->layout().title);
            return;
        }
    }
    cannot(std::string("press ") + key + " in the window \"" + title() + "\", which has no button for it");
}

void WindowOnScreen::type(const std::string& field, const std::string& text) {
    const auto control = use<TextField>(field);
    if (control->layout().kind == Control::Kind::label) {
        cannot("type into the label \"" + field + '"');
    }
    control->edit(text);
}

void WindowOnScreen::insert(const std::string& field, const std::string& text, std::size_t at) {
    std::string all = textOf(field);
    all.insert(std::min(at, all.size()), text);
    type(field, all);
}

void WindowOnScreen::choose(const std::string& popUp, const std::string& item) {
    const auto control = use<PopUpButton>(popUp);
    const auto found = std::ranges::find(control->items(), item, &RemoteCoding::PopUpItem::title);
    if (found == control->items().end()) {
        cannot("choose \"" + item + "\" of \"" + popUp + '"');
    }
    control->choose(static_cast<std::size_t>(found - control->items().begin()));
}

std::size_t WindowOnScreen::rowNumber(TableView& table, const Row& row) const {
    const auto texts = tableTexts(table);
    const auto found =
        row.text_ ? std::ranges::find_if(texts,
                                         [&](const std::vector<std::string>& cells) {
                                             return std::ranges::find(cells, *row.text_) != cells.end();
                                         })
                  : texts.begin() + std::ptrdiff_t(std::min(row.number_, texts.size()));
    if (found == texts.end()) {
        cannot("find the row " + row.text_.value_or(std::to_string(row.number_)) + " in the table \"" +
               table.layout().title + '"');
    }
    return static_cast<std::size_t>(found - texts.begin());
}

void WindowOnScreen::clickCheckBox(const std::string& table, const Row& row) {
    const auto control = use<TableView>(table);
    const auto cells = control->drawnRows()[rowNumber(*control, row)];
    for (const TableView::Cell& cell : cells) {
        if (const auto checkBox = std::dynamic_pointer_cast<CheckBox>(cell)) {
            checkBox->click();
            return;
        }
    }
    cannot("click a check box in a row of \"" + table + "\" that has none");
}

void WindowOnScreen::selectRow(const std::string& table, const Row& row) {
    const auto control = use<TableView>(table);
    control->select(static_cast<std::int64_t>(rowNumber(*control, row)));
}

void WindowOnScreen::deselect(const std::string& table) { use<TableView>(table)->select(-1); }

void WindowOnScreen::answerSheet(const std::string& button) {
    expectNotBehindAlert("answer a sheet");
    if (window_->sheet() == nullptr) {
        cannot("answer a sheet on the window \"" + title() + "\", which has none");
    }
    window_->answerSheet(button);
}

void WindowOnScreen::signIn(const std::string& userId) {
    expectUsable("sign in");
    if (const auto signIn = window_->signIn()) {
        signIn->signIn(userId);
        return;
    }
    cannot("sign in at the window \"" + title() + "\", which does not ask for it");
}

void WindowOnScreen::cancelSignIn() {
    expectUsable("cancel a sign-in");
    if (const auto signIn = window_->signIn()) {
        signIn->cancel();
        return;
    }
    cannot("cancel a sign-in at the window \"" + title() + "\", where none runs");
}

void WindowOnScreen::failSignIn(std::exception_ptr error) {
    if (const auto signIn = window_->signIn()) {
        signIn->end(Base::Result<LoginCoordinator::User>::failure(std::move(error)));
        return;
    }
    cannot("let a sign-in fail at the window \"" + title() + "\", where none runs");
}

void WindowOnScreen::close() {
    expectUsable("close the window \"" + title() + '"');
    window_->performClose(nullptr);
}

}  // namespace ReferenceHost

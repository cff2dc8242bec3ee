#pragma once

#include "Components/RemoteCoding/HostInterfaces/Alert.hpp"
#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

class Control;
class TableView;

/// A visible window as its user sees and uses it. Controls are called by their titles: what stands on a button, what a field,
/// pop-up or table is called. Main thread only.
///
/// Whatever a user cannot do now throws `std::logic_error`, which says what there is instead: looking at a closed window, calling
/// for a control that is not there, using one that is disabled, covered by a sheet or a sign-in, or behind an alert.
class WindowOnScreen {
public:
    /// Of a row: its number, or the text of one of its cells.
    class Row {
    public:
        Row(std::size_t number) : number_(number) {}         // NOLINT(google-explicit-constructor)
        Row(int number) : number_(std::size_t(number)) {}    // NOLINT(google-explicit-constructor)
        Row(std::string text) : text_(std::move(text)) {}    // NOLINT(google-explicit-constructor)
        Row(const char* text) : text_(std::string(text)) {}  // NOLINT(google-explicit-constructor)

    private:
        friend class WindowOnScreen;
        std::size_t number_ = 0;
        std::optional<std::string> text_;
    };

    explicit WindowOnScreen(std::shared_ptr<HeadlessWindow> window) : window_(std::move(window)) {}

    // What there is to see.

    [[nodiscard]] bool isOpen() const { return window_->isVisible(); }
    [[nodiscard]] std::string title() const { return window_->title(); }
    [[nodiscard]] bool has(const std::string& control) const;
    [[nodiscard]] bool isEnabled(const std::string& control) const;
    [[nodiscard]] std::string textOf(const std::string& field) const;
    [[nodiscard]] std::vector<std::string> items(const std::string& popUp) const;
    [[nodiscard]] std::optional<std::string> selectedItem(const std::string& popUp) const;

    /// Cell by cell: a text, "[x]" or "[ ]" for a check box, the empty text where there is nothing.
    [[nodiscard]] std::vector<std::vector<std::string>> rows(const std::string& table) const;
    [[nodiscard]] std::optional<std::size_t> selectedRow(const std::string& table) const;

    [[nodiscard]] std::optional<RemoteCoding::Alert> sheet() const;
    [[nodiscard]] bool asksToSignIn() const;

    // What its user does.

    /// Of a button.
    void click(const std::string& button);

    /// As the Return or the Escape key: presses the default or the cancel button.
    void pressReturn();
    void pressEscape();

    /// Selects all that is in the field and puts this in its place, as one change.
    void type(const std::string& field, const std::string& text);

    /// One change; at the end, or before the byte of that number.
    void insert(const std::string& field, const std::string& text, std::size_t at = std::string::npos);

    /// The first item of that title.
    void choose(const std::string& popUp, const std::string& item);

    /// The first check box in the row.
    void clickCheckBox(const std::string& table, const Row& row);

    /// Of a row that is selected already, nobody is told.
    void selectRow(const std::string& table, const Row& row);
    void deselect(const std::string& table);

    void answerSheet(const std::string& button);

    void signIn(const std::string& userId);
    void cancelSignIn();

    /// Not the user's doing: the sign-in that the window shows breaks down.
    void failSignIn(std::exception_ptr error);

    /// Presses the close button.
    void close();

private:
    [[noreturn]] void cannot(const std::string& what) const;
    void expectOpen() const;
    void expectUsable(const std::string& deed) const;
    void expectNotBehindAlert(const std::string& deed) const;
    template <typename Kind>
    [[nodiscard]] std::shared_ptr<Kind> find(const std::string& title) const;
    template <typename Kind>
    [[nodiscard]] std::shared_ptr<Kind> use(const std::string& title) const;
    [[nodiscard]] std::size_t rowNumber(TableView& table, const Row& row) const;
    void pressMarked(bool RemoteCoding::WindowLayoutControl::* mark, const char* key);

    std::shared_ptr<HeadlessWindow> window_;
};

}  // namespace ReferenceHost

#include "ReferenceHost/Account.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Windowing/Person.hpp"
#include "Tests/HostContract/ReferenceHostClocks.hpp"
#include "Tests/HostContract/SignInContract.hpp"
#include "Tests/HostContract/WindowingContract.hpp"

namespace HostContract {

namespace {

template <typename Clock>
class ReferenceWindowingFixture final : public WindowingFixture {
public:
    explicit ReferenceWindowingFixture(std::uint64_t seed) : clock_(seed) {}
    ~ReferenceWindowingFixture() override {
        EXPECT_EQ(execution_->wrongThreadCount(), 0U);
        execution_->stop();
    }

    WindowingProtocol& windowing() override { return *windowing_; }
    NotificationCenterProtocol& notificationCenter() override { return center_; }
    Base::ExecutionProtocol& execution() override { return *execution_; }
    bool runUntil(const std::function<bool()>& predicate) override { return clock_.runUntil(predicate); }

    void click(Name window, Name button) override { at(window).click(button); }
    void type(Name window, Name field, Name text) override { at(window).type(field, text); }
    void choose(Name window, Name popUp, Name item) override { at(window).choose(popUp, item); }
    void clickCheckBox(Name window, Name table, Name row) override { at(window).clickCheckBox(table, row); }
    void selectRow(Name window, Name table, Name row) override {
        row.empty() ? at(window).deselect(table) : at(window).selectRow(table, row);
    }
    void close(Name window) override { at(window).close(); }
    void answerSheet(Name window, Name button) override { at(window).answerSheet(button); }
    Strings rows(Name window, Name table) override {
        Strings texts;
        for (const auto& cells : at(window).rows(table)) {
            texts.push_back(cells.back());
        }
        return texts;
    }
    void onAlert(std::function<void(const Alert&)> shown) override { person_.onAlert(std::move(shown)); }
    void press(Name button) override { person_.answer(button); }
    AccountProtocol& account() override { return *account_; }
    void signIn(Name window, Name userId) override { at(window).signIn(userId); }
    void cancelSignIn(Name window) override { at(window).cancelSignIn(); }
    void failSignIn(Name window, Name error) override {
        at(window).failSignIn(std::make_exception_ptr(std::runtime_error(error)));
    }

private:
    ReferenceHost::WindowOnScreen at(Name window) { return person_.window(window); }

    Clock clock_;
    std::unique_ptr<ReferenceHost::ReportingExecution> execution_ = clock_.makeExecution();
    ReferenceHost::NotificationCenter center_;
    std::shared_ptr<ReferenceHost::HeadlessWindowing> windowing_ =
        std::make_shared<ReferenceHost::HeadlessWindowing>(*execution_, center_);
    ReferenceHost::Person person_{*windowing_};
    std::shared_ptr<ReferenceHost::Account> account_ = std::make_shared<ReferenceHost::Account>(*execution_);
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, WindowingContract,
                         (hostsOnEachClock<WindowingHost, ReferenceWindowingFixture>()),
                         nameOf<WindowingHost>);
INSTANTIATE_TEST_SUITE_P(ReferenceHost, SignInContract,
                         (hostsOnEachClock<WindowingHost, ReferenceWindowingFixture>()),
                         nameOf<WindowingHost>);

}  // namespace HostContract

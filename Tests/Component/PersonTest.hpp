#pragma once

#include "Base/Error.hpp"
#include "ReferenceHost/Windowing/Person.hpp"
#include "Tests/Component/ComponentTest.hpp"

#include <set>

namespace RemoteCoding {

namespace TraceKind = ReferenceHost::TraceKind;
using ReferenceHost::CloudOperation;
using ReferenceHost::Fault;
using ReferenceHost::WindowOnScreen;
using Texts = std::vector<std::string>;

/// Ann at her screen. She is in two teams, has two feeds, and leaves alerts by their last button unless a test says
/// otherwise. In the end nothing of what she began is left.
class PersonTest : public ComponentTest {
protected:
    PersonTest() {
        host_.setRemoteCodingComponent(component_);
        host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Main camera"),
                                    std::make_shared<ReferenceHost::CaptureDevice>("Goal camera")});
        setTeams("Reds", "Blues");
        ann_.onAlert([this](const Alert& alert) { ann_.answer(ReferenceHost::buttonTitles(alert).back()); });
    }
    void TearDown() override {
        settle();
        EXPECT_EQ(host_.unfinishedTasks(), 0U);
    }
    void setTeams(std::optional<std::string> reds, std::optional<std::string> blues,
                  const std::set<std::string>& members = {"ann"}) {
        service_.teams().add({.id = "reds", .name = std::move(reds), .members = members});
        service_.teams().add({.id = "blues", .name = std::move(blues), .members = members});
    }
    WindowOnScreen open(bool toJoin) {
        toJoin ? component_->openJoinSharingSessionWindow() : component_->openCreateSharingSessionWindow();
        settle();
        return ann_.window(toJoin ? "Join Video Sharing Session" : "New Video Sharing Session");
    }
    void letFail(CloudOperation operation, int times, const char* answer) {
        for (; times > 0; --times) {
            host_.cloudClient().faultNext(operation, Fault(Fault::Kind::failBeforeEffect));
            ann_.willAnswer(answer);
        }
    }
    void delay(CloudOperation operation, double seconds) {
        host_.cloudClient().faultNext(operation, Fault(Fault::Kind::none, Base::Seconds(seconds)));
    }
    [[nodiscard]] Texts traced(const char* kind, const char* field = "message") const {
        Texts values;
        for (const auto& entry : trace_.entries("Ann", kind)) {
            values.emplace_back(entry.field(field));
        }
        return values;
    }
    /// All that the last entry of that kind says.
    [[nodiscard]] Texts last(const char* kind) const {
        Texts values;
        for (const auto& [name, value] : std::vector(trace_.entries("Ann", kind).back().fields)) {
            values.push_back(value);
        }
        return values;
    }
    [[nodiscard]] auto calls(const char* name) const {
        return std::ranges::count(traced(TraceKind::call, "name"), name);
    }
    static constexpr const char* requestFailed = "The cloud service could not carry out the request.";
    ReferenceHost::Person& ann_ = host_.person();
};

}  // namespace RemoteCoding

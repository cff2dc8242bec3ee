#pragma once

#include "ReferenceHost/Windowing/Person.hpp"
#include "Tests/Component/ComponentTest.hpp"

namespace RemoteCoding {

using ReferenceHost::CloudOperation;
using ReferenceHost::Fault;
namespace TraceKind = ReferenceHost::TraceKind;
using Rows = std::vector<std::vector<std::string>>;

/// Ann at her two session windows. She is in two teams, has two feeds, and leaves alerts by their last button unless a test
/// says otherwise.
class SessionWindowTest : public ComponentTest {
protected:
    SessionWindowTest() {
        host_.setRemoteCodingComponent(component_);
        host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Main camera", "1"),
                                    std::make_shared<ReferenceHost::CaptureDevice>("Goal camera", "2")});
        addTeam("reds", "Reds");
        addTeam("blues", "Blues");
        ann_.onAlert([this](const Alert& alert) {
            ann_.answer(alert.buttons.empty() ? "OK" : alert.buttons.back().title);
        });
    }
    void TearDown() override {
        settle();
        EXPECT_EQ(host_.unfinishedTasks(), 0U);
    }

    void addTeam(const std::string& id, std::optional<std::string> name) {
        service_.teams().add({.id = id, .name = std::move(name), .members = {"ann"}});
    }
    ReferenceHost::WindowOnScreen openNew() {
        component_->openCreateSharingSessionWindow();
        settle();
        return ann_.window(newTitle);
    }
    ReferenceHost::WindowOnScreen openJoin() {
        component_->openJoinSharingSessionWindow();
        settle();
        return ann_.window(joinTitle);
    }
    void fail(CloudOperation operation, int times = 1) {
        for (int time = 0; time < times; ++time) {
            host_.cloudClient().faultNext(operation, Fault(Fault::Kind::failBeforeEffect));
        }
    }

    [[nodiscard]] std::vector<std::string> traced(const char* kind, const char* field = "message") const {
        std::vector<std::string> values;
        for (const auto& entry : trace_.entries("Ann", kind)) {
            values.emplace_back(entry.field(field));
        }
        return values;
    }
    [[nodiscard]] std::vector<std::string> alerts() const { return traced(TraceKind::alert); }
    [[nodiscard]] std::vector<std::string> warnings() const { return traced(TraceKind::logWarn); }
    [[nodiscard]] auto calls(const std::string& name) const {
        return std::ranges::count(traced(TraceKind::call, "name"), name);
    }
    [[nodiscard]] ReferenceHost::TraceFields usage() const {
        const auto events = trace_.entries("Ann", TraceKind::logUsage);
        return events.empty() ? ReferenceHost::TraceFields() : events.back().fields;
    }

    static constexpr const char* newTitle = "New Video Sharing Session";
    static constexpr const char* joinTitle = "Join Video Sharing Session";
    static constexpr const char* requestFailed = "The cloud service could not carry out the request.";
    ReferenceHost::Person& ann_ = host_.person();
};

}  // namespace RemoteCoding

#pragma once

#include "Base/Error.hpp"
#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/RemoteCodingComponentProtocol.hpp"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace HostContract {

/// Stands in the component's place and notes in words what a host tells it, each with the timeline's id. It has an address for
/// whatever it is asked for, and no session.
class NotingComponent final : public RemoteCoding::RemoteCodingComponentProtocol {
public:
    using Id = const std::string&;

    explicit NotingComponent(Base::ExecutionProtocol& execution) : execution_(execution) {}

    std::vector<std::string> told;

    void note(const std::string& what, Id timelineId, const std::exception_ptr& error = nullptr) {
        EXPECT_TRUE(execution_.isMainThread()) << what;
        told.push_back(what + " " + timelineId + (error ? ": " + Base::describe(error) : ""));
    }
    void fragmentDownloaded(Id timelineId) override { note("fragment", timelineId); }
    void fragmentDownloadPaused(std::exception_ptr with, Id timelineId) override {
        note("pause", timelineId, with);
    }
    void fragmentDownloadResumed(Id timelineId) override { note("resumed", timelineId); }
    void fragmentDownloadDidError(std::exception_ptr error, Id timelineId) override {
        note("error", timelineId, error);
    }
    void fragmentDownloadComplete(Id timelineId) override { note("complete", timelineId); }
    void streamEnded(Id timelineId) override { note("stream ended", timelineId); }

    void getManifestURL(Id /*timelineId*/, Id videoId,
                        Base::Completion<std::optional<std::string>> completion) override {
        execution_.postToMain([completion = std::move(completion), url = address + videoId] {
            completion(std::optional<std::string>(url));
        });
    }
    void streamURLs(Id /*videoId*/, const std::vector<std::string>& streamIds,
                    Base::Completion<std::map<std::string, Base::URL>> completion) override {
        std::map<std::string, Base::URL> urls;
        for (const std::string& id : streamIds) {
            urls.emplace(id, *Base::URL::parse(address + id));
        }
        execution_.postToMain([completion = std::move(completion), urls] { completion(urls); });
    }

    void openCreateSharingSessionWindow() override {}
    void openJoinSharingSessionWindow() override {}
    bool hasActiveSession(Id /*timelineId*/) const override { return false; }
    bool isActiveSessionCollaborator(Id /*timelineId*/) const override { return false; }
    std::optional<RemoteCoding::RemoteCodingSessionDetails> sessionDetails(Id /*timelineId*/) const override {
        return std::nullopt;
    }
    Base::Result<void>
    createNewRemoteCodingSession(Id /*name*/, std::shared_ptr<RemoteCoding::PublishSessionProtocol>,
                                 Id /*teamId*/,
                                 std::shared_ptr<RemoteCoding::CaptureDeviceProtocol>) override {
        return {};
    }
    void joinRemoteCodingSession(const RemoteCoding::ShareFile&, Id /*streamName*/, Id /*tevuVideoId*/,
                                 Id /*teamId*/, const std::optional<std::string>&) override {}
    void endRemoteCodingSession(Id /*timelineId*/) override {}
    void exitRemoteCodingSession(Id /*timelineId*/) override {}
    void promptEndRemoteCodingSession(std::shared_ptr<RemoteCoding::WindowProtocol>,
                                      Id /*timelineId*/) override {}
    void promptExitRemoteCodingSession(std::shared_ptr<RemoteCoding::WindowProtocol>,
                                       Id /*timelineId*/) override {}

private:
    inline static const std::string address = "https://live.example/";

    Base::ExecutionProtocol& execution_;
};

}  // namespace HostContract

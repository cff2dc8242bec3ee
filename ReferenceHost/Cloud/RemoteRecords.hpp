#pragma once

#include "Base/Color.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionModel.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Plain records of what the cloud holds and tells.
namespace ReferenceHost {

/// What a client writes about one moment. In an update, absent fields stay as they are.
struct MomentDraft {
    std::string instanceId;                 ///< with the timeline id: the moment's origin
    std::optional<std::string> externalId;  ///< which moment an update means
    std::optional<std::string> code;        ///< the name of the instance's row
    std::optional<Base::Color> codeColor;   ///< the colour of that row, for whoever has to make it
    double start = 0;                       ///< seconds
    double end = 0;                         ///< seconds
    std::string notes;
    /// Which edits of the timeline's user set this; absent: everything is new.
    std::optional<EditNumbers> numbers{};

    friend bool operator==(const MomentDraft&, const MomentDraft&) = default;
};

/// One moment as the cloud holds it. Immutable once published.
struct MomentRecord {
    std::string id;
    std::string code;
    Base::Color codeColor;
    double start = 0;
    double end = 0;
    std::string notes;
    std::string originTimelineId;
    std::string originInstanceId;
    std::map<std::string, EditNumbers> taken{};  ///< by timeline: up to which of its edits the moment goes
    std::string sessionId{};
    std::uint64_t number = 0;  ///< a later moment of the session has a higher one

    friend bool operator==(const MomentRecord&, const MomentRecord&) = default;
};
using MomentPointer = std::shared_ptr<const MomentRecord>;

/// The moment as that timeline's draft leaves it: of a draft with numbers, what has a higher number than was taken before.
[[nodiscard]] MomentRecord withDraft(MomentRecord moment, const std::string& timelineId,
                                     const MomentDraft& draft);

/// Whether both say the same of the clip.
[[nodiscard]] bool isSameClip(const MomentRecord& left, const MomentRecord& right);

/// One row of a presentation view.
struct CodeRecord {
    std::string name;
    Base::Color color;

    friend bool operator==(const CodeRecord&, const CodeRecord&) = default;
};
using CodeList = std::shared_ptr<const std::vector<CodeRecord>>;

/// One tagging session at one moment of time.
struct TaggingSessionRecord {
    std::string id;
    std::string videoId;
    std::string createdByUserId;
    std::vector<MomentPointer> moments;  ///< in the order of their creation
    CodeList presentationView;           ///< null until one was saved
    std::uint64_t sequence = 0;          ///< the number of its last change; 0 before the first
};

/// One accepted change, as every subscriber is told of it.
struct RemoteChange {
    std::uint64_t sequence = 0;  ///< from 1 on within the session, without gaps
    std::uint64_t client = 0;    ///< who made it
    RemoteCoding::TaggingSessionChangeType type = RemoteCoding::TaggingSessionChangeType::unknown;
    std::vector<MomentPointer> moments;
    CodeList presentationView;
};
using ChangePointer = std::shared_ptr<const RemoteChange>;

enum class CloudOperation : std::uint8_t {
    fetchTaggingSessions,
    subscribe,
    createTaggingSession,
    savePresentationView,
    createMoments,
    updateMoments,
    removeMoments,
    getVideo,
    getVideosForTeamId,
    openPublishSession,
    fetchTeams,
};

/// The operation's name as it stands in the trace.
[[nodiscard]] const char* nameOf(CloudOperation operation);
[[nodiscard]] const char* nameOf(RemoteCoding::TaggingSessionChangeType type);

/// Whether it is a write of the sync library, which its client repeats over short drops.
[[nodiscard]] bool isWrite(CloudOperation operation);

/// One write that the service has carried out, in full, so that a check can follow a session's history by itself.
struct AcceptedCall {
    CloudOperation operation = CloudOperation::createMoments;
    std::uint64_t client = 0;
    std::string timelineId;
    std::uint64_t sequenceBefore = 0;    ///< the session's last change before the call
    std::uint64_t sequenceAfter = 0;     ///< and after it: equal when the call found nothing to change
    std::vector<MomentDraft> drafts;     ///< of creations and updates, as sent
    std::vector<std::string> momentIds;  ///< of creations: the answer; of removals: as sent
    CodeList presentationView;           ///< that was saved
};

}  // namespace ReferenceHost

#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <string>
#include <vector>

namespace RemoteCoding {

/// The sync library's access to tagging sessions: it turns the host's instances into moments and the host's rows into a
/// presentation view, and writes them.
///
/// Threads and order: called off the main thread. For one timeline the component has at most one call under way for
/// each upload pass, and awaits it before the next; an upload that was started before remote changes are applied may
/// overlap with the next pass. The completion is called once, from any thread, before or after the call returns.
///
/// Ownership: instances and rows may be kept until the completion has been called.
///
/// Failure: an error through the completion; the component logs its description and sends the same changes again with
/// the next upload, unless somebody else's change was coming in meanwhile. An exception out of the call counts as that error. There is no time limit: a call that never
/// completes holds up the synchronisation of its timeline. Writes should be repeated over short network drops
/// before they fail.
///
/// Shutdown: a completion may be dropped or called late; both are harmless.
class REMOTE_CODING_EXPORT TaggingSessionServiceProtocol : public HostObject {
public:
    /// Gives the identifier of a tagging session of the video: the primary one when there is one already, else a new one.
    virtual void createTaggingSession(const std::string& teamId, const std::string& videoId,
                                      const std::string& userId,
                                      Base::Completion<std::string> completion) = 0;

    /// Saves what the timeline's user has changed in the list of rows. The rows are the whole list, in their order; they are
    /// saved as they are for a session that has none yet. `name` is always the empty text. The resulting text is ignored.
    virtual void savePresentationView(const std::string& teamId, const std::string& videoId,
                                      const std::string& taggingSessionId, const std::string& timelineId,
                                      const std::string& name, RowList rows,
                                      Base::Completion<std::string> completion) = 0;

    /// Creates one moment for each instance and gives their identifiers, in the same order. Repeating a creation for the
    /// same timeline id and instance id, while its moment lives, updates that moment and gives its identifier again.
    /// None, when the timeline was published as another session's meanwhile.
    virtual void createMoments(const std::string& teamId, const std::string& videoId,
                               const std::string& taggingSessionId, const std::string& timelineId,
                               InstanceList instances,
                               Base::Completion<std::vector<std::string>> completion) = 0;

    /// Writes what the timeline's user has changed of the instances since they were written last to the moments that their
    /// `externalId`s name. True when done; a moment
    /// that does not exist any more is passed over and does not make the answer false.
    virtual void updateMoments(const std::string& teamId, const std::string& videoId,
                               const std::string& taggingSessionId, const std::string& timelineId,
                               InstanceList instances, Base::Completion<bool> completion) = 0;

    /// Deletes the moments. True when none of them exists any more.
    virtual void removeMoments(const std::string& teamId, const std::string& videoId,
                               const std::string& taggingSessionId, const std::string& timelineId,
                               std::vector<std::string> momentIds, Base::Completion<bool> completion) = 0;
};

}  // namespace RemoteCoding

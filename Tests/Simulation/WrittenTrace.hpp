#pragma once

#include "Apps/Simulator/Record.hpp"

#include <iomanip>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

/// Traces that are written by hand.
namespace Simulator {

/// A guest's stay as it should be: a pull, an upload that succeeds, its echo, one that fails, a reconnection with two attempts.
/// Entries are separated by semicolons, T is the timeline.
inline const std::string guestsStay = R"(
1 call name=boolForKey key=enableSharedTimelines; 1 block.start T number=1 kind=pull; 1 log.info message="Syncing remote tagging session to the local timeline"; 1 call name=fetchTaggingSessions call=1
1 log.info message="Subscribing to tagging session updates. TeamId=e, TimelineId=t"; 1 call name=subscribeToTaggingSessionChanges call=2 subscription=1 T
1.1 subscription subscription=1 state=open after=0; 1.2 answer name=fetchTaggingSessions call=1 count=1 ids=s; 1.2 count T old=0 new=0 reason=applied; 1.2 block.end T number=1
3 notification name=TimelineNotifications.timelineDidAnyChange T modifyCount=1; 3 edit T what=addRow count=1 row=r
3 notification name=TimelineNotifications.timelineDidAnyChange T modifyCount=2; 3 edit T what=tag count=2 clip=c; 4 block.start T number=2 kind=upload
4 call name=timelineFromModifyCount T from=1 modifyCount=2 instances=c; 4 log.info message="Uploading all local timeline updates"; 4 upload.start T number=1 first=1 last=2
4 call name=createMoments call=3 T taggingSessionId=s count=1 ids=c; 4.1 answer name=createMoments call=3 count=1 ids=m; 4.1 log.info message="Updating Tevu presentation view."
4.1 call name=savePresentationView call=4 T taggingSessionId=s count=1; 4.2 answer name=savePresentationView call=4; 4.2 upload.end T number=1 succeeded=true
4.2 count T old=0 new=2 reason=uploaded; 4.2 block.end T number=2; 4.3 delivery subscription=1 sequence=1 type=momentsAdded ids=m; 4.3 block.start T number=3 kind=event
4.3 log.info message="Received timeline update. ChangeType=momentsAdded"; 4.3 count T old=2 new=2 reason=applied; 4.3 block.end T number=3
4.3 delivery subscription=1 sequence=2 type=presentationViewUpdated; 4.3 block.start T number=4 kind=event
4.3 log.info message="Received timeline update. ChangeType=presentationViewUpdated"; 4.3 count T old=2 new=2 reason=applied; 4.3 block.end T number=4
5 notification name=TimelineNotifications.timelineDidAnyChange T modifyCount=3; 5 edit T what=deleteClip count=3 clip=c; 6 block.start T number=5 kind=upload
6 call name=timelineFromModifyCount T from=3 modifyCount=3 deleted=c; 6 log.info message="Uploading all local timeline updates"; 6 upload.start T number=2 first=3 last=3
6 call name=removeMoments call=5 T taggingSessionId=s ids=m; 6.1 answer name=removeMoments call=5 error=lost; 6.1 log.warn message="Unable to delete moments. Error=lost."
6.1 log.warn message="Some upload operations are unsuccessful"; 6.1 upload.end T number=2 succeeded=false; 6.1 block.end T number=5
7 subscription subscription=1 state=failed error=gone; 7 log.warn message="Error while listening for tagging session changes. Error=gone"
7 subscription subscription=1 state=cancelled; 7 log.warn message="Disconnected from tagging session updates. Attempting to reconnect."
7 log.info message="Attempting to reconnect to the remote tagging session. Attempt=1"; 7 block.start T number=6 kind=reconnection
7 call name=timelineFromModifyCount T from=3 modifyCount=3 deleted=c; 7 log.info message="Uploading all local timeline updates"; 7 upload.start T number=3 first=3 last=3
7 call name=removeMoments call=6 T taggingSessionId=s ids=m; 7.1 answer name=removeMoments call=6 answer=true
7.1 call name=savePresentationView call=7 T taggingSessionId=s count=1; 7.2 answer name=savePresentationView call=7; 7.2 upload.end T number=3 succeeded=true
7.2 count T old=2 new=3 reason=uploaded; 7.2 call name=fetchTaggingSessions call=8; 7.3 answer name=fetchTaggingSessions call=8 error=down
7.3 log.warn message="Unable to get remote tagging session. Error=down"; 9.3 log.info message="Attempting to reconnect to the remote tagging session. Attempt=2"
9.3 block.end T number=6; 9.3 block.start T number=7 kind=reconnection; 9.3 call name=fetchTaggingSessions call=9; 9.4 answer name=fetchTaggingSessions call=9 count=1 ids=s
9.4 count T old=3 new=3 reason=applied; 9.4 block.end T number=7; 9.4 log.info message="Subscribing to tagging session updates. TeamId=e, TimelineId=t"
9.4 call name=subscribeToTaggingSessionChanges call=10 subscription=2 T; 9.5 subscription subscription=2 state=open after=2; 20 stage name=settled; 140 stage name=quiet
141 subscription subscription=2 state=cancelled; 141 log.usage message=SessionEnded TimelineId=t; 142 stage name=left)";

inline std::vector<std::string> split(const std::string& text, const std::string& separators) {
    const std::regex separator(separators);
    std::vector<std::string> parts(std::sregex_token_iterator(text.begin(), text.end(), separator, -1), {});
    std::erase(parts, std::string());
    return parts;
}

inline ReferenceHost::TraceEntry entryOf(const std::string& text) {
    std::istringstream stream(std::regex_replace(text, std::regex("\\bT\\b"), "timelineId=t"));
    double time = 0;
    std::string kind;
    stream >> time >> kind;
    ReferenceHost::TraceFields fields;
    for (std::string name, value;
         stream >> std::ws && std::getline(stream, name, '=') && stream >> std::quoted(value);) {
        fields.emplace_back(name, value);
    }
    return {Base::Seconds(time), kind == SimulatedKind::stage ? "" : "Ben", kind, fields};
}

inline Record recordOf(const std::string& text) {
    Record record;
    Stay& stay = record.stays.emplace_back();
    stay.analyst = "Ben";
    stay.timelineId = "t";
    stay.sessionId = "s";
    for (const std::string& entry : split(text, "; |\n")) {
        record.trace.push_back(entryOf(entry));
        const auto stage = record.trace.back().field("name");
        record.settled = stage == "settled" ? record.trace.size() : record.settled;
        record.quiet = stage == "quiet" ? record.trace.size() : record.quiet;
    }
    return record;
}

}  // namespace Simulator

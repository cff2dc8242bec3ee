#pragma once

#include "ReferenceHost/Timeline/Timeline.hpp"

namespace ReferenceHost {

/// While it lives, the edits of the timeline are the component's or the sync library's, not the user's.
class TimelineComponentEdit {
public:
    explicit TimelineComponentEdit(Timeline& timeline)
        : timeline_(timeline), wasComponentEdit_(timeline.componentEdits_) {
        timeline_.componentEdits_ = true;
    }
    ~TimelineComponentEdit() { timeline_.componentEdits_ = wasComponentEdit_; }
    TimelineComponentEdit(const TimelineComponentEdit&) = delete;
    TimelineComponentEdit& operator=(const TimelineComponentEdit&) = delete;

private:
    Timeline& timeline_;
    bool wasComponentEdit_;
};

}  // namespace ReferenceHost

#include "Apps/Simulator/Drawing/Bars.hpp"

#include <algorithm>

namespace Simulator {

namespace {

const char* glyph(const TraceSpan& span, Bars::Part part) {
    switch (part) {
    case Bars::Part::start:
        return span.isUpload ? "╔" : "┏";
    case Bars::Part::middle:
        return span.isUpload ? "║" : "┃";
    case Bars::Part::end:
        return span.isUpload ? "╚" : "┗";
    case Bars::Part::whole:
        return span.isUpload ? "□" : "■";
    }
    return " ";
}

}  // namespace

void Bars::open(const TraceSpan& span) {
    const auto free = std::ranges::find(places_, nullptr);
    if (free != places_.end()) {
        *free = &span;
    } else {
        places_.push_back(&span);
    }
}

void Bars::close(const TraceSpan& span) {
    std::ranges::replace(places_, &span, static_cast<const TraceSpan*>(nullptr));
}

std::string Bars::line(const TraceSpan* span, Part part) const {
    std::string text;
    for (const TraceSpan* place : places_) {
        text += place == nullptr ? " " : glyph(*place, place == span ? part : Part::middle);
    }
    return text;
}

std::string Bars::idleLine() const {
    std::string text;
    for (const TraceSpan* place : places_) {
        text += place == nullptr ? " " : place->isUpload ? "╎" : "┆";
    }
    return text;
}

}  // namespace Simulator

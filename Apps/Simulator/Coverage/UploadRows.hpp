#pragma once

#include "Apps/Simulator/Conformance/State.hpp"
#include "Apps/Simulator/Coverage/Rows.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace Simulator {

/// What can go otherwise with uploads, beside failures that are logged.
class UploadRows {
public:
    [[nodiscard]] static std::span<const std::string_view> names();

    explicit UploadRows(Rows& rows) : rows_(rows) {}

    void see(const Conformance::Entry& entry);

private:
    struct State {
        std::map<std::int64_t, std::string_view> created;  // moments, by the upload that is under way
        std::unordered_set<std::string_view> halfSent;  // moments of uploads that failed after creating them
        std::size_t lastSave = 0;                       // index into the trace
        std::int64_t lastCreator = 0;                   // the upload whose creation was called last
        bool hasUploaded = false;                       // in the block that runs
    };

    void called(const Conformance::Entry& entry, State& state);
    void answered(const Conformance::Entry& entry, State& state);
    void blockEnded(const Conformance::Entry& entry, const State& state);
    void edited(const Conformance::Entry& entry, const State& state);

    Rows& rows_;
    Conformance::ForEach<State> states_;
    std::unordered_set<std::string_view> sent_;                   // clips of which a creation was called
    std::unordered_map<std::string_view, std::size_t> deleted_;   // clips, by users: the entry
    std::unordered_map<std::string_view, std::size_t> rowsMade_;  // by users: the entry
};

}  // namespace Simulator

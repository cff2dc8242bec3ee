#include "ReferenceHost/Timeline/RowEditAccount.hpp"

#include "ReferenceHost/Timeline/TimelineInstance.hpp"
#include "ReferenceHost/Timeline/TimelineRow.hpp"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace ReferenceHost {

using Base::synchronized;

namespace {

constexpr std::size_t mostSaved =
    1'000;  // of saved ones that are kept, for an earlier session that is still saving

}  // namespace

void RowEditAccount::add(RowEdit edit, std::shared_ptr<const TimelineRow> row,
                         std::shared_ptr<const TimelineRow> above) {
    synchronized(lock_, [&] {
        entries_.push_back({std::move(edit), std::move(row), std::move(above), {}});
        while (entries_.size() > mostSaved && !entries_.front().savedIn.empty()) {
            entries_.pop_front();
        }
    });
}

void RowEditAccount::follow(const TimelineRow& row, const std::string& oldName, const std::string& newName) {
    synchronized(lock_, [&] {
        const auto isUnsaved = [&](const Entry& entry, RowEdit::Kind kind) {
            return entry.row.get() == &row && entry.edit.kind == kind && entry.savedIn.empty();
        };
        if (std::ranges::none_of(
                entries_, [&](const Entry& entry) { return isUnsaved(entry, RowEdit::Kind::remove); })) {
            std::erase_if(entries_, [&](const Entry& entry) { return isUnsaved(entry, RowEdit::Kind::add); });
        }
        for (Entry& entry : entries_) {
            if (entry.row.get() == &row && entry.edit.name == oldName) {
                entry.edit.name = newName;
            }
            if (entry.above.get() == &row && entry.edit.above == oldName) {
                entry.edit.above = newName;
            }
        }
    });
}

bool RowEditAccount::mustWait(const Entry& entry, const MomentCondition& isRemoved) {
    const auto clips = entry.row->allInstances();
    return entry.edit.kind == RowEdit::Kind::rename && std::ranges::any_of(*clips, [&](const auto& clip) {
               const auto& ours = static_cast<const TimelineInstance&>(*clip);
               const auto moment = clip->externalId();
               return moment && ours.written().code < entry.edit.number &&
                      entry.edit.number <= ours.editNumbers().code && !(isRemoved && isRemoved(*moment));
           });
}

RowEdits RowEditAccount::unsaved(const std::string& sessionId, std::uint64_t writer,
                                 const MomentCondition& isRemoved) {
    const auto entries = synchronized(lock_, [&] {
        const auto next = beginningsAfter_.lower_bound(writer);
        const std::uint64_t first = next != beginningsAfter_.begin() ? std::prev(next)->second : 0;
        std::uint64_t& beginning = beginnings_.try_emplace(sessionId, first).first->second;
        beginning = std::min(beginning, first);
        std::vector<Entry> unsaved;
        std::ranges::copy_if(entries_, std::back_inserter(unsaved), [&](const Entry& entry) {
            return entry.edit.number > beginning && !entry.savedIn.contains(sessionId);
        });
        return unsaved;
    });
    std::set<const TimelineRow*> removed;
    for (const Entry& entry : entries) {
        if (entry.edit.kind == RowEdit::Kind::remove) {
            removed.insert(entry.row.get());
        } else {
            removed.erase(entry.row.get());
        }
    }
    std::map<const TimelineRow*, std::string> waiting;  // with the names that they have in the list
    RowEdits edits;
    for (const Entry& entry : entries) {
        const bool isRename = entry.edit.kind == RowEdit::Kind::rename;
        const bool isNameTaken = std::ranges::any_of(waiting, [&](const auto& row) {
            return row.first != entry.row.get() && row.second == entry.edit.name;
        });
        if (isNameTaken || (!removed.contains(entry.row.get()) && mustWait(entry, isRemoved))) {
            waiting.try_emplace(entry.row.get(), isRename ? entry.edit.oldName : entry.edit.name);
        }
        edits.push_back(entry.edit);
        if (waiting.contains(entry.row.get())) {
            edits.back().waits = true;
            continue;
        }
        if (const auto found = waiting.find(entry.above.get()); found != waiting.end()) {
            edits.back().newAbove = *std::exchange(edits.back().above, found->second);
        }
    }
    return edits;
}

void RowEditAccount::areSaved(const std::string& sessionId, const RowEdits& edits) {
    synchronized(lock_, [&] {
        for (Entry& entry : entries_) {
            const auto edit = std::ranges::find(edits, entry.edit.number, &RowEdit::number);
            if (edit != edits.end() && !edit->waits) {
                entry.savedIn.insert(sessionId);
            }
        }
    });
}

void RowEditAccount::enterSession(std::uint64_t lastWriter) {
    synchronized(lock_, [&] {
        std::erase_if(entries_, [&](const Entry& entry) { return entry.edit.number > lastInSession_; });
        // A session that this timeline was not in yet has nothing to do with what was done in others.
        const std::uint64_t last = beginningsAfter_.empty() ? 0 : beginningsAfter_.rbegin()->second;
        beginningsAfter_.insert_or_assign(lastWriter, std::max(last, lastInSession_));
    });
}

void RowEditAccount::publish(std::uint64_t lastWriter, std::uint64_t lastEdit) {
    synchronized(lock_, [&] { beginningsAfter_.insert_or_assign(lastWriter, lastEdit); });
}

}  // namespace ReferenceHost

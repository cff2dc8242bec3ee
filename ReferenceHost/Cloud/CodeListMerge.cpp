#include "ReferenceHost/Cloud/CodeListMerge.hpp"

#include <algorithm>

namespace ReferenceHost {

namespace {

using Codes = std::vector<CodeRecord>;

Codes::iterator find(Codes& codes, const std::string& name) {
    return std::ranges::find(codes, name, &CodeRecord::name);
}

/// Below the row that it stood below on its user's timeline; at the end when that one has gone.
void insert(Codes& codes, CodeRecord code, const RowEdit& edit) {
    auto place = codes.begin();
    if (edit.above) {
        place = find(codes, *edit.above);
        place = place == codes.end() ? find(codes, edit.newAbove) : place;
        place += place == codes.end() ? 0 : 1;
    }
    codes.insert(place, std::move(code));
}

using Kind = RowEdit::Kind;

void apply(const RowEdit& edit, Codes& codes) {
    const auto row = find(codes, edit.kind == Kind::rename ? edit.oldName : edit.name);
    if (row == codes.end()) {
        // New, or taken away or renamed by somebody who did not know of this edit.
        if (edit.kind != Kind::remove && find(codes, edit.name) == codes.end()) {
            insert(codes, CodeRecord{edit.name, edit.color}, edit);
        }
        return;
    }
    switch (edit.kind) {
    case Kind::add:
        break;
    case Kind::remove:
        codes.erase(row);
        break;
    case Kind::rename:
        if (edit.name == edit.oldName || find(codes, edit.name) == codes.end()) {
            row->name = edit.name;
        } else {
            codes.erase(row);  // somebody else has made a row of that name
        }
        break;
    case Kind::recolor:
        row->color = edit.color;
        break;
    case Kind::move: {
        CodeRecord moved = std::move(*row);
        codes.erase(row);
        insert(codes, std::move(moved), edit);
        break;
    }
    }
}

/// The list has had the row's next colour or place since.
bool isOutdated(const RowEdit& edit, const NumberedRowEdits& taken) {
    return (edit.kind == Kind::recolor || edit.kind == Kind::move) &&
           std::any_of(taken.upper_bound(edit.number), taken.end(), [&](const auto& later) {
               return later.second.kind == edit.kind && later.second.name == edit.name;
           });
}

/// The row loses its name. Later edits under that name were meant for another row, and the list has made them to this one: they are
/// made again.
void applyAgain(const RowEdit& edit, const NumberedRowEdits& taken, Codes& codes) {
    const std::string& name = edit.kind == Kind::rename ? edit.oldName : edit.name;
    for (auto later = taken.upper_bound(edit.number); later != taken.end(); ++later) {
        if (later->second.name == name) {
            apply(later->second, codes);
        }
    }
}

}  // namespace

std::vector<CodeRecord> withEdits(std::vector<CodeRecord> codes, const RowEdits& edits,
                                  const NumberedRowEdits& taken) {
    for (const RowEdit& edit : edits) {
        if (isOutdated(edit, taken)) {
            continue;
        }
        const bool losesItsName = (edit.kind == Kind::rename && find(codes, edit.oldName) != codes.end()) ||
                                  (edit.kind == Kind::remove && find(codes, edit.name) != codes.end());
        apply(edit, codes);
        if (losesItsName) {
            applyAgain(edit, taken, codes);
        }
    }
    return codes;
}

}  // namespace ReferenceHost

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

void apply(const RowEdit& edit, Codes& codes) {
    using Kind = RowEdit::Kind;
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

}  // namespace

std::vector<CodeRecord> withEdits(std::vector<CodeRecord> codes, const RowEdits& edits) {
    for (const RowEdit& edit : edits) {
        apply(edit, codes);
    }
    return codes;
}

}  // namespace ReferenceHost

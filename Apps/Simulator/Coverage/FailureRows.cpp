#include "Apps/Simulator/Coverage/FailureRows.hpp"

#include "Apps/Simulator/Conformance/Reader.hpp"
#include "Apps/Simulator/Coverage/ChangeRows.hpp"
#include "Apps/Simulator/Coverage/LineRows.hpp"
#include "Apps/Simulator/Coverage/PullRows.hpp"
#include "Apps/Simulator/Coverage/SessionRows.hpp"
#include "Apps/Simulator/Coverage/UploadRows.hpp"

namespace Simulator {

Rows noFailures() {
    Rows rows;
    rows.add(LineRows::names());
    rows.add(SessionRows::names());
    rows.add(UploadRows::names());
    rows.add(ChangeRows::names());
    rows.add(PullRows::names());
    return rows;
}

Rows failuresIn(const Record& record) {
    Rows rows = noFailures();
    Conformance::Reader reader(record);
    LineRows lines(rows);
    SessionRows sessions(rows);
    UploadRows uploads(rows);
    ChangeRows changes(rows);
    PullRows pulls(rows, record);
    for (std::size_t index = 0; index < record.trace.size(); ++index) {
        const Conformance::Entry entry = reader.read(index);
        lines.see(entry);
        sessions.see(entry);
        uploads.see(entry);
        changes.see(entry);
        pulls.see(entry);
        reader.didSee(entry);
    }
    sessions.finish();
    return rows;
}

}  // namespace Simulator

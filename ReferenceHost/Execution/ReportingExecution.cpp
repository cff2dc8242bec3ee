#include "ReferenceHost/Execution/ReportingExecution.hpp"

namespace ReferenceHost {

void ReportingExecution::didCallOnWrongThread(const Base::WrongThread& report) noexcept {
    wrongThreadCount_.fetch_add(1);
    if (trace_ == nullptr) {
        return;
    }
    try {
        trace_->record(host_, TraceKind::wrongThread,
                       {{"file", std::string(report.file)},
                        {"function", std::string(report.function)},
                        {"line", std::to_string(report.line)},
                        {"expected", report.expectedMainThread ? "main" : "background"}});
    } catch (...) {
        // Out of memory: the count still tells.
    }
}

}  // namespace ReferenceHost

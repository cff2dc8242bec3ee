#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <memory>

namespace Base {

/// Deleter of a shared pointer whose object has to be destroyed on the main thread, whichever thread drops the last
/// reference. The execution must outlive the object.
class MainThreadDeleter {
public:
    explicit MainThreadDeleter(ExecutionProtocol& execution) : execution_(&execution) {}

    template <typename Object>
    void operator()(Object* object) const noexcept {
        if (execution_->isMainThread()) {
            delete object;
            return;
        }
        // The job owns the object, so that a host which drops its jobs destroys it too.
        const std::shared_ptr<void> owner(object, [](void* owned) { delete static_cast<Object*>(owned); });
        try {
            execution_->postToMain([owner] {});
        } catch (...) {  // NOLINT(bugprone-empty-catch): an execution that takes no more jobs has stopped
        }
    }

private:
    ExecutionProtocol* execution_;
};

}  // namespace Base

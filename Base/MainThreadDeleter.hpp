#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <memory>
#include <utility>

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
        // The job alone owns the object: a reference kept here could turn out to be the last one. A host that drops the job
        // destroys the object with it.
        std::shared_ptr<void> owner(object, [](void* owned) { delete static_cast<Object*>(owned); });
        try {
            execution_->postToMain([owner = std::move(owner)] {});
        } catch (...) {  // NOLINT(bugprone-empty-catch): an execution that takes no more jobs has stopped
        }
    }

private:
    ExecutionProtocol* execution_;
};

}  // namespace Base

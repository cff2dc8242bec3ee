#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"

#include "Base/TaskScope.hpp"

namespace RemoteCoding {

UnfinishedTasks::UnfinishedTasks() : scope_(std::make_unique<Base::TaskScope>()) {}

UnfinishedTasks::~UnfinishedTasks() = default;

std::size_t UnfinishedTasks::count() const { return scope_->count(); }

void UnfinishedTasks::drop() { scope_->drop(); }

}  // namespace RemoteCoding

#include "ReferenceHost/NotificationCenter.hpp"
#include "Tests/HostContract/NotificationCenterContract.hpp"

namespace HostContract {

INSTANTIATE_TEST_SUITE_P(ReferenceHost, NotificationCenterContract,
                         testing::Values(NotificationCenterHost(
                             "ReferenceHost",
                             [] { return std::make_shared<ReferenceHost::NotificationCenter>(); })),
                         [](const auto& host) { return host.param.name; });

}  // namespace HostContract

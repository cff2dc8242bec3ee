#pragma once

#include "Base/ExecutionProtocol.hpp"

namespace Base::Threading {

/// Reports to the host when the caller is not on its main thread. The caller goes on in any case.
void checkIsMainThread(ExecutionProtocol& execution, std::string_view file, std::string_view function,
                       std::uint_least32_t line) noexcept;

/// Reports to the host when the caller is on its main thread. The caller goes on in any case.
void checkIsNotMainThread(ExecutionProtocol& execution, std::string_view file, std::string_view function,
                          std::uint_least32_t line) noexcept;

}  // namespace Base::Threading

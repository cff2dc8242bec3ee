#include "Base/Threading.hpp"

namespace Base::Threading {

void checkIsMainThread(ExecutionProtocol& execution, std::string_view file, std::string_view function,
                       std::uint_least32_t line) noexcept {
    if (!execution.isMainThread()) {
        execution.didCallOnWrongThread(WrongThread{file, function, line, true});
    }
}

void checkIsNotMainThread(ExecutionProtocol& execution, std::string_view file, std::string_view function,
                          std::uint_least32_t line) noexcept {
    if (execution.isMainThread()) {
        execution.didCallOnWrongThread(WrongThread{file, function, line, false});
    }
}

}  // namespace Base::Threading

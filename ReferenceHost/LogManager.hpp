#pragma once

#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ReferenceHost {

enum class LogLevel : std::uint8_t { info, warning, error, usage };

/// Writes the log into the trace and, where there is one, to a sink.
class LogManager final : public RemoteCoding::LogManagerProtocol {
public:
    /// One line of text without its end. Any thread, several at a time; what it throws is dropped.
    using Sink = std::function<void(LogLevel level, std::string_view line)>;

    /// `trace` may be null; else it outlives this object.
    explicit LogManager(std::string host = {}, Trace* trace = nullptr, Sink sink = nullptr);

    void logInfo(std::string_view message) override;
    void logWarn(std::string_view message) override;
    void logError(std::string_view message, std::string_view detail, std::string_view file,
                  std::string_view function, std::uint_least32_t line) override;
    void logUsage(std::string_view functionName, RemoteCoding::LogOpName operation,
                  const RemoteCoding::UsageAttributes& attributes) override;

private:
    void write(LogLevel level, TraceFields fields) noexcept;

    std::string host_;
    Trace* trace_;
    Sink sink_;
};

}  // namespace ReferenceHost

#include "ReferenceHost/LogManager.hpp"

#include <utility>
#include <variant>

namespace ReferenceHost {

namespace {

const char* traceKind(LogLevel level) {
    switch (level) {
    case LogLevel::info:
        return TraceKind::logInfo;
    case LogLevel::warning:
        return TraceKind::logWarn;
    case LogLevel::error:
        return TraceKind::logError;
    case LogLevel::usage:
        break;
    }
    return TraceKind::logUsage;
}

/// The line as a person reads it: the message, then what else is known, in brackets.
std::string lineOf(const TraceFields& fields) {
    std::string line;
    std::string rest;
    for (const auto& [name, value] : fields) {
        if (name == "message") {
            line = value;
        } else if (!value.empty()) {
            rest += (rest.empty() ? "" : ", ") + name + " " + value;
        }
    }
    return rest.empty() ? line : line + " [" + rest + "]";
}

}  // namespace

LogManager::LogManager(std::string host, Trace* trace, Sink sink)
    : host_(std::move(host)), trace_(trace), sink_(std::move(sink)) {}

void LogManager::logInfo(std::string_view message) {
    write(LogLevel::info, {{"message", std::string(message)}});
}

void LogManager::logWarn(std::string_view message) {
    write(LogLevel::warning, {{"message", std::string(message)}});
}

void LogManager::logError(std::string_view message, std::string_view detail, std::string_view file,
                          std::string_view function, std::uint_least32_t line) {
    write(LogLevel::error, {{"message", std::string(message)},
                            {"detail", std::string(detail)},
                            {"file", std::string(file)},
                            {"function", std::string(function)},
                            {"line", std::to_string(line)}});
}

void LogManager::logUsage(std::string_view functionName, RemoteCoding::LogOpName,
                          const RemoteCoding::UsageAttributes& attributes) {
    TraceFields fields{{"message", std::string(functionName)}, {"operation", "remoteCoding"}};
    for (const auto& [name, value] : attributes) {
        const bool* flag = std::get_if<bool>(&value);
        fields.emplace_back(name,
                            flag != nullptr ? (*flag ? "true" : "false") : std::get<std::string>(value));
    }
    write(LogLevel::usage, std::move(fields));
}

void LogManager::write(LogLevel level, TraceFields fields) noexcept {
    try {
        if (sink_) {
            sink_(level, lineOf(fields));
        }
    } catch (...) {
        // A log that cannot be written must not disturb what it tells of.
    }
    try {
        if (trace_ != nullptr) {
            trace_->record(host_, traceKind(level), std::move(fields));
        }
    } catch (...) {
        // As above: out of memory.
    }
}

}  // namespace ReferenceHost

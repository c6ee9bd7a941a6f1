#pragma once

#include <QString>

#include <cstdint>
#include <optional>

/// Kinds of log lines and groups that targets use.
namespace TargetLogKind {
inline constexpr int Error = 4;
inline constexpr int Complete = 0x100;
inline constexpr int Failed = 0x104;
inline constexpr int ScriptGroup = 0x4000;
inline constexpr int LoadGroup = 0xc100;
} // namespace TargetLogKind

/// What the host window offers a target. The defaults are those of a host that shows nothing.
class TargetInterfaceHelperFunctions {
public:
    virtual ~TargetInterfaceHelperFunctions() = default;
    /// Moves the progress bar. A total of -1 keeps the old total, null texts keep the old texts.
    virtual void progress(int /*current*/, int /*total*/, const char* /*what*/,
                          const char* /*unit*/, bool /*showRate*/)
    {
    }
    /// Adds a line to the log.
    virtual void message(const QString& /*text*/) { }
    virtual void error(const QString& /*text*/) { }
    /// A line of a kind of TargetLogKind.
    virtual void message(const QString& /*text*/, int /*kind*/) { }
    virtual void success(const QString& /*text*/) { }
    virtual void beginGroup(const QString& /*title*/, int /*kind*/) { }
    /// A null text means no closing line.
    virtual void endGroup(const QString& /*text*/) { }
    /// True once the user has cancelled.
    virtual bool checkCancelled() { return false; }
    virtual bool differentialDownloadEnabled() { return false; }
    virtual bool debugStartupComplete() const { return false; }
    /// The value of a debugger expression, or nothing if it has none.
    virtual std::optional<std::uint64_t> evaluateExpression(const QString& /*expression*/)
    {
        return std::nullopt;
    }
};

/// The services that new targets get; never null. A null pointer brings back a host that shows
/// nothing.
TargetInterfaceHelperFunctions* targetInterfaceHelperFunctions();
void setTargetInterfaceHelperFunctions(TargetInterfaceHelperFunctions* functions);

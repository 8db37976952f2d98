#pragma once

#include <QSize>
#include <QString>

#include <optional>

/// One row of the report on the machine.
struct CheckResult
{
    QString label;
    QString value;
    bool ok = true; ///< the finding meets the requirement

    bool operator==(const CheckResult &) const = default;
};

// These functions make a row of what a probe has read; they depend on their arguments alone. What
// could not be read is an empty text, 0 or nothing; the row is then ok unless said otherwise.

/// What the system reports about itself; only `build` decides whether it is supported.
struct OperatingSystem
{
    QString productName;
    QString displayVersion;
    int build = 0; ///< 0: unknown, and accepted
    QString prettyName; ///< stands in for a missing product name
    QString architecture;
};
[[nodiscard]] CheckResult judgeOperatingSystem(const OperatingSystem &system);

/// `megahertz` is shown unless the name contains the speed.
[[nodiscard]] CheckResult judgeProcessor(const QString &name, int megahertz,
                                         const QString &architecture);

[[nodiscard]] CheckResult judgeMemory(std::optional<quint64> bytes);

/// `available` in bytes, below 1 for unknown; `volume` is the volume's root as it is shown.
[[nodiscard]] CheckResult judgeDiskSpace(qint64 available, const QString &volume);

/// `pixels` in device pixels, nothing without a screen; `refreshRate` in hertz.
[[nodiscard]] CheckResult judgeDisplay(std::optional<QSize> pixels, double refreshRate);

/// Pixels of a screen whose size was divided by `ratio` and then rounded to `scaled`. If several
/// sizes are possible, the one that is most usual for a panel.
[[nodiscard]] QSize unscaledScreenSize(QSize scaled, double ratio);

/// `release` is the framework's own release number; a missing framework is not ok.
[[nodiscard]] CheckResult judgeDotNet(int release);

[[nodiscard]] CheckResult judgeVcRuntime(bool present);

/// An empty `version` means that the runtime is missing.
[[nodiscard]] CheckResult judgeWebView(const QString &version);

/// `policyState` as the system's policy key holds it: 1 on, 2 evaluation.
[[nodiscard]] CheckResult judgeSmartAppControl(int policyState);

/// Label and "on" state of the row that the system check page looks for again.
inline constexpr QStringView kSmartAppControlLabel = u"Smart App Control";
inline constexpr int kSmartAppControlOn = 1;

#pragma once

#include <QStringView>

/// Who we are: all that is compared, stored or put together. Sentences for the user spell the
/// product's name out, so that they can be translated as a whole.
namespace Product {

inline constexpr QStringView kName = u"Varnel Schematics";
inline constexpr QStringView kVersion = u"1.6.9";
inline constexpr QStringView kPublisher = u"Varnel Solutions Team";
inline constexpr QStringView kPublisherNotice = u"\u00a9 2026 Varnel Solutions Team";
inline constexpr QStringView kWebAddress = u"varnel.example";
inline constexpr QStringView kExecutable = u"VarnelSolutions.exe";

/// The set-up program itself: its application name.
inline constexpr QStringView kSetupName = u"Varnel Schematics Setup";

/// Disk space an installation needs, in bytes and as it is shown.
inline constexpr qint64 kRequiredBytes = 230'686'720;
inline constexpr QStringView kRequiredSpace = u"220 MB";

/// Name of the product's key below the system's list of installed programs.
inline constexpr QStringView kUninstallKey = u"{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1";

} // namespace Product

#pragma once

#include <QByteArrayView>
#include <QString>

/// Where the certificate table of a Windows program ends, in bytes from the beginning of its file:
/// its signature lies behind everything else. `head` are the first bytes of the file, of which 4
/// KiB are enough. 0 if it has no signature, or is no Windows program. The layout is that of
/// Microsoft's "PE Format".
[[nodiscard]] qint64 certificateTableEnd(QByteArrayView head);

/// Whether this program has a signature, valid or not, as it was started: its file may have been
/// exchanged since. False on other systems than Windows.
[[nodiscard]] bool isThisProgramSigned();

/// Who has signed the program `path`, by the common name of the certificate: only if the signature
/// is valid and the certificate is one that Windows trusts, by its own check (WinVerifyTrust),
/// which reads the whole file. A certificate above it that this computer lacks is fetched, which
/// may take long. Empty if not, and on other systems.
[[nodiscard]] QString trustedSigner(const QString &path);

/// Whether this program, whose file is `self`, and the one at `path` are signed by the same,
/// trusted name. Reads both files.
[[nodiscard]] bool isFromSamePublisher(const QString &self, const QString &path);

/// The sentence for the user if the publishers differ.
[[nodiscard]] QString notOurSignatureSentence();

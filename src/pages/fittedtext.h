#pragma once

#include <QString>

#include <functional>

/// Text from outside in little room: what is left out of it, and where its lines may break.

/// Whether a text has room where it is to be shown.
using HasRoom = std::function<bool(const QString &text)>;

/// What all these functions are: they return `text` as it is if it has room, else with an ellipsis
/// in place of as little as possible.
using Shorten = QString (*)(const QString &text, const HasRoom &hasRoom);

/// Leaves out the middle: of a path, the beginning and the end tell most.
[[nodiscard]] QString shortenMiddle(const QString &text, const HasRoom &hasRoom);

/// As above, but of "… free on <volume>" only the volume's middle, so that the figures stay.
[[nodiscard]] QString shortenFinding(const QString &text, const HasRoom &hasRoom);

/// Leaves out the end. A message that ends in "(log: <path>)", or is "Log: <path>", keeps the path
/// whole for as long as anything else can be left out.
[[nodiscard]] QString shortenMessage(const QString &text, const HasRoom &hasRoom);

/// `text` with invisible characters in it, by which a line may break after the separators of a path
/// and may not break after the colon of a drive.
[[nodiscard]] QString withPathBreaks(const QString &text);

#pragma once

#include <QString>

/// Takes pictures of every page that shows text from outside, with texts of every length; those of
/// one page follow each other.
void takePicturesOfLongNames(const QString &folder);

#pragma once

/// Removes the user's preference folder of the product below APPDATA, with all that is in it.
/// Silent on failure. Does nothing if APPDATA is unset or no absolute path, if the folder would not
/// lie inside it, or if it or its parent is a link: what a link points to is not ours to delete.
void removeUserData();

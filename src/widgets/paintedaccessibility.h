#pragma once

/// Makes the widgets that only paint readable by assistive technology: rows as list items that are
/// there once they show, the progress track as a progress bar from 0 to 100, pictures as pictures,
/// the announcer as a notification, and the window as a dialog.
/// Call once, when there is an application object.
void installPaintedAccessibility();

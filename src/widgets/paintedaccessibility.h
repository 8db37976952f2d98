#pragma once

/// Makes the painted widgets readable by assistive technology: rows as list items that are
/// invisible until they are revealed, the progress track as a progress bar from 0 to 100, pictures
/// as pictures, the announcer as a notification, and the window as a dialog. To be called once,
/// after the application object is created.
void installPaintedAccessibility();

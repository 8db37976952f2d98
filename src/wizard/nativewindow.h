#pragma once

class QWidget;

/// Makes a frameless window that is being shown for the first time a full member of the desktop: it
/// can be minimised from the task bar, has a system menu, and is in front of whatever asked the
/// user for consent before. Only Windows needs it; elsewhere nothing happens.
void presentWindow(QWidget &window);

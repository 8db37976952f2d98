// Precompiled for all tests, see CMakeLists.txt. Each test still includes what it uses.
#include <QtTest>
#include <QtWidgets>

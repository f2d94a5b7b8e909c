#pragma once

namespace app {

class MainWindow;

// Gives the window its menu bar, and each of its fields the editing menu as a context menu. Once.
// Main thread.
void addMenus(MainWindow& window);

} // namespace app

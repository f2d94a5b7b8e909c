#pragma once

#include <QString>

namespace platform {

// Shows the file in the desktop's file browser: its folder with the file selected, or the folder
// alone where nobody can select a file. One window: a slow file browser is waited for. Returns at
// once and reports nothing: the person sees what happens. Main thread.
void showInFileBrowser(const QString& path);

} // namespace platform

#pragma once

#include <QFont>

// The desktop's interface font at the sizes of this window. Sizes are logical pixels, never points:
// a desktop that asks for large print would otherwise push the texts out of their fixed rows.
namespace look {

// Main thread, after the application object exists.
QFont font(int pixels, QFont::Weight weight = QFont::Normal);

// The window's title: 26 pixels, semibold, set a little tighter.
QFont titleFont();

// The distance between two baselines of wrapped text in pixels; also the height of a single line.
int lineHeight(int pixels);

} // namespace look

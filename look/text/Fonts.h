#pragma once

#include <QFont>

#include <string_view>

// The desktop's interface font at the sizes of this window. Sizes are logical pixels, never points:
// a desktop that asks for large print would otherwise push the texts out of their fixed rows. Main
// thread, after the application object exists, but for lineHeight().
namespace look {

QFont font(int pixels, QFont::Weight weight = QFont::Normal);

// The same for names in any script: without what preferLettersOf() has put before the desktop's
// choice, which would have Qt complain of every script that the preferred font lacks.
QFont fontForNames(int pixels, QFont::Weight weight = QFont::Normal);

// The window's title: 26 pixels, semibold, set a little tighter.
QFont titleFont();

// The distance between two baselines of wrapped text in pixels; also the height of a single line.
// Any thread.
int lineHeight(int pixels);

// Chinese, Japanese and Korean share letters that each writes in a form of its own. The desktop
// chooses by the system's language, which need not be the interface's: this makes it the
// interface's, a code of nxui::languageCodes. Before applyLook(); does nothing for other languages.
void preferLettersOf(std::string_view language);

} // namespace look

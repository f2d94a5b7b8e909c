#pragma once

#include <QString>

namespace look {

// The order that the text's own first strong letter asks for. Pure; any thread.
Qt::LayoutDirection ownDirection(const QString& text, Qt::LayoutDirection otherwise);

// Whether any letter of it reads from the right. Pure; any thread.
bool holdsRightToLeft(const QString& text);

// The text set apart from what stands around it (UAX #9): in the direction of its own first strong
// letter, or from left to right whatever it holds. Pure; any thread.
QString isolated(const QString& text);
QString isolatedLeftToRight(const QString& text);

// A text that is to go into a sentence: set apart where either of them reads from the right, else
// as it is. Pure; any thread.
QString within(const QString& sentence, const QString& text);

} // namespace look

#pragma once

#include <QSize>

// What the controls and the style measure alike, in logical pixels.
namespace look::sizes {

// Corners, from their outer edge.
constexpr int radius = 7; // full-size controls and lists
constexpr int smallRadius = 6;
constexpr int toolTipRadius = 6;
constexpr int menuRadius = 8;
constexpr int panelRadius = 12;
constexpr int rowRadius = 5; // a highlighted row of a list or menu
constexpr qreal boxRadius = 3.5;

// Heights.
constexpr int button = 32;
constexpr int popUp = 28;
constexpr int smallControl = 24;
constexpr int menuRow = 24;
constexpr int box = 14; // a check box without its title, wide as well

// The border and padding of a menu together: rows start here.
constexpr int menuInset = 5;
// From a menu's edge.
constexpr int menuTickAt = 13;
constexpr int menuTextAt = 31;
constexpr int menuTextEnd = 8; // at the other end, from the row's

constexpr int boxGap = 6; // between a check box and its title
constexpr int buttonPadding = 15;
constexpr int fieldPadding = 11;
constexpr int popUpPadding = 11;
constexpr QSize chevrons(9, 14);
constexpr int chevronsAt = 9 + 9; // from the trailing edge, both arrows and the gap behind them
constexpr int chevronsGap = 6;    // before them
constexpr int scrollGutter = 12;
constexpr int scrollInset = 3; // around the thumb in its gutter
constexpr int focusRing = 3;
constexpr int focusRingInner = 1; // of these

// A magnifier before a button's title, and the gap between them.
constexpr int glyph = 16;
constexpr int glyphGap = 6;

// More than any text of the program needs, and what nobody reads beyond.
constexpr int mostLines = 24;
// Wider than any screen: no line is measured beyond it.
constexpr int widest = 4096;

} // namespace look::sizes

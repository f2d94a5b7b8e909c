#pragma once

#include <QCommonStyle>

class QApplication;

namespace look {

// Draws the toolkit's own controls: dark whatever the desktop says, flat, every state in its own
// colours. Owns nothing; keeps nothing between two calls. Main thread.
class Style : public QCommonStyle {
    Q_OBJECT
public:
    QPalette standardPalette() const override;
    void polish(QWidget* widget) override;
    using QCommonStyle::polish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override;
};

// Gives the application this look: the style, the palette, the default font (the desktop's, 13
// pixels), plain tooltips, the focus ring, and to assistive technology what our widgets are. Main
// thread, before the first widget.
void applyLook(QApplication& application);

} // namespace look

#include "look/style/StylePainting.h"

#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/Glyphs.h"
#include "look/controls/Segments.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QCheckBox>
#include <QPainter>

#include <cmath>

namespace look {
namespace {

constexpr Face pushFace{colours::push, colours::pushTop, colours::label};
constexpr Face pushHoverFace{colours::pushHover, colours::pushHoverTop, colours::label};
constexpr Face pushPressedFace{colours::pushPressed, colours::pushPressedTop, colours::label};
constexpr Face pushDisabledFace{colours::pushDisabled, colours::pushDisabledTop,
                                colours::disabledText};

constexpr Face prominentFace{colours::prominent, colours::prominentTop, colours::white};
constexpr Face prominentHoverFace{colours::prominentHover, colours::prominentHover, colours::white};
constexpr Face prominentPressedFace{colours::prominentPressed, colours::prominentPressedTop,
                                    colours::white};
constexpr Face prominentDisabledFace{colours::prominentDisabled, colours::prominentDisabledTop,
                                     colours::prominentDisabledText};

Face pushFaceFor(QStyle::State state) {
    if (!(state & QStyle::State_Enabled))
        return pushDisabledFace;
    if (state & (QStyle::State_Sunken | QStyle::State_On))
        return pushPressedFace;
    return state & QStyle::State_MouseOver ? pushHoverFace : pushFace;
}

Face prominentFaceFor(QStyle::State state) {
    if (!(state & QStyle::State_Enabled))
        return prominentDisabledFace;
    if (!(state & QStyle::State_Active))
        return pushFaceFor(state);
    if (state & QStyle::State_Sunken)
        return prominentPressedFace;
    return state & QStyle::State_MouseOver ? prominentHoverFace : prominentFace;
}

Qt::Alignment leading(Qt::LayoutDirection direction) {
    return direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
}

Qt::Alignment trailing(Qt::LayoutDirection direction) {
    return direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
}

// The reverse of literal(), for texts that the toolkit hands on; a mnemonic's sign goes.
QString withoutMnemonic(QString text) {
    for (qsizetype i = text.indexOf(u'&'); i >= 0; i = text.indexOf(u'&', i + 1))
        text.remove(i, 1);
    return text;
}

} // namespace

void drawButton(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget) {
    const auto* button = qobject_cast<const Button*>(widget);
    const bool isProminent = button && button->kind() == ButtonKind::Prominent;
    const Face face = isProminent ? prominentFaceFor(option.state) : pushFaceFor(option.state);
    drawRaised(painter, option.rect, button ? button->cornerRadius() : sizes::radius, face);

    const QFont font = widget ? widget->font() : painter.font();
    const Line title = button ? button->shownTitle()
                              : fitLine(withoutMnemonic(option.text), font, option.rect.width());
    QRect text = option.rect;
    if (button && button->glyph() == ButtonGlyph::Magnifier) {
        const int titleWidth = int(std::ceil(title.width));
        const int both = sizes::glyph + sizes::glyphGap + titleWidth;
        const QRect glyph(option.rect.left() + (option.rect.width() - both) / 2,
                          option.rect.top() + (option.rect.height() - sizes::glyph) / 2,
                          sizes::glyph, sizes::glyph);
        drawMagnifier(painter, QStyle::visualRect(option.direction, option.rect, glyph).topLeft(),
                      face.text);
        text = QRect(glyph.right() + 1 + sizes::glyphGap, text.top(), titleWidth, text.height());
        text = QStyle::visualRect(option.direction, option.rect, text);
    }
    drawLine(painter, text, title, font, face.text, Qt::AlignHCenter, option.direction);
}

void drawPopUp(QPainter& painter, const QStyleOptionComboBox& option, const QRect& text,
               const QRect& chevrons) {
    const Face face = pushFaceFor(option.state);
    drawRaised(painter, option.rect, sizes::radius, face);
    drawChevrons(painter, chevrons.topLeft(), face.text);
    const QFont font = painter.font();
    drawLine(painter, text, fitLine(option.currentText, font, text.width()), font, face.text,
             leading(option.direction), option.direction);
}

void drawField(QPainter& painter, const QStyleOption& option, const QWidget* widget) {
    const auto* field = qobject_cast<const Field*>(widget);
    const int radius = field ? field->cornerRadius() : sizes::smallRadius;
    QRgb fill = colours::well;
    QRgb line = colours::border;
    if (!(option.state & QStyle::State_Enabled)) {
        fill = colours::fieldDisabled;
        line = colours::borderDisabled;
    } else {
        if (option.state & QStyle::State_ReadOnly) {
            fill = colours::fieldReadOnly;
            line = colours::borderReadOnly;
        }
        if (option.state & QStyle::State_HasFocus && option.state & QStyle::State_Active)
            line = colours::focusRing;
    }
    drawBordered(painter, option.rect, radius, fill, line);
}

void drawFocusRing(QPainter& painter, const QStyleOption& option, const QWidget& control) {
    QRect around = option.rect.marginsRemoved(QMargins() + sizes::focusRing);
    qreal radius = sizes::radius;
    if (const auto* field = qobject_cast<const Field*>(&control)) {
        radius = field->cornerRadius();
    } else if (const auto* segments = qobject_cast<const Segments*>(&control)) {
        radius = segments->cornerRadius();
    } else if (const auto* button = qobject_cast<const Button*>(&control)) {
        radius = button->cornerRadius();
    } else if (qobject_cast<const QCheckBox*>(&control)) {
        QStyleOptionButton box;
        box.rect = around;
        box.direction = control.layoutDirection();
        around = control.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &box, &control);
        radius = sizes::boxRadius;
    }
    drawBand(painter, around, radius, sizes::focusRing, colours::focusRing);
    drawBand(painter, around, radius, sizes::focusRingInner, colours::focusRingInner);
}

void drawWell(QPainter& painter, const QStyleOption& option) {
    const bool isEnabled = option.state & QStyle::State_Enabled;
    drawBordered(painter, option.rect, sizes::radius, colours::well,
                 isEnabled ? colours::border : colours::borderDisabled);
}

void drawCheckBox(QPainter& painter, const QStyleOption& option) {
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isOn = option.state & QStyle::State_On;
    const QRect box = option.rect;
    if (!isEnabled)
        drawBordered(painter, box, sizes::boxRadius, colours::pillDisabled,
                     colours::checkBoxDisabledLine);
    else if (isOn)
        drawBordered(painter, box, sizes::boxRadius, colours::prominent, colours::prominentTop);
    else
        drawBordered(painter, box, sizes::boxRadius, colours::push, colours::pushTop);
    if (isOn)
        drawBoxTick(painter, box.topLeft(), isEnabled ? colours::white : colours::pillDisabledText);
}

void drawCheckBoxTitle(QPainter& painter, const QStyleOptionButton& option) {
    const QFont font = painter.font();
    const QRgb colour =
        option.state & QStyle::State_Enabled ? colours::label : colours::disabledText;
    const QString title = withoutMnemonic(option.text);
    drawLine(painter, option.rect, fitLine(title, font, option.rect.width()), font, colour,
             leading(option.direction), option.direction);
}

void drawScrollThumb(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb) {
    if (thumb.isEmpty())
        return;
    QRgb fill = colours::thumb;
    if (!(option.state & QStyle::State_Enabled)) {
        fill = colours::thumbDisabled;
    } else if (option.state & (QStyle::State_MouseOver | QStyle::State_Sunken) &&
               option.activeSubControls & QStyle::SC_ScrollBarSlider) {
        fill = colours::thumbHover;
    }
    fillRounded(painter, thumb, qMin(thumb.width(), thumb.height()) / 2.0, fill);
}

void drawMenuPanel(QPainter& painter, const QRect& rectangle) {
    drawBordered(painter, rectangle, sizes::menuRadius, colours::panel, colours::panelOutline);
}

void drawMenuRow(QPainter& painter, const QStyleOptionMenuItem& option) {
    constexpr int tickAt = sizes::menuTickAt - sizes::menuInset;
    constexpr int textAt = sizes::menuTextAt - sizes::menuInset;
    const QRect row = option.rect;
    const bool isEnabled = option.state & QStyle::State_Enabled;
    QRgb colour = isEnabled ? colours::label : colours::disabledText;
    QRgb keyColour = isEnabled ? colours::secondary : colours::disabledText;
    if (isEnabled && option.state & QStyle::State_Selected) {
        fillRounded(painter, row, sizes::rowRadius, colours::selection);
        colour = keyColour = colours::white;
    }
    if (option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked) {
        const QRect tick(row.left() + tickAt, row.top(), 12, row.height());
        drawMenuTick(painter, QStyle::visualRect(option.direction, row, tick).topLeft(), colour);
    }
    const QFont font = option.font;
    const qsizetype tab = option.text.indexOf(u'\t');
    const QString title = withoutMnemonic(tab < 0 ? option.text : option.text.left(tab));
    QRect text(row.left() + textAt, row.top(), row.width() - textAt - sizes::menuTextEnd,
               row.height());
    text = QStyle::visualRect(option.direction, row, text);
    drawLine(painter, text, fitLine(title, font, text.width()), font, colour,
             leading(option.direction), option.direction);
    if (tab >= 0)
        drawLine(painter, text, fitLine(option.text.mid(tab + 1), font, text.width()), font,
                 keyColour, trailing(option.direction), option.direction);
}

QSize menuRowSize(const QStyleOptionMenuItem& option, const QSize& contents) {
    int width = contents.width() + sizes::menuTextAt - sizes::menuInset + sizes::menuTextEnd;
    if (option.text.contains(u'\t'))
        width += 24;
    return {width, sizes::menuRow};
}

void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    painter.fillRect(option.rect, QColor(colours::window));
    const bool isEnabled = option.state & QStyle::State_Enabled;
    if (isEnabled && option.state & QStyle::State_Selected) {
        fillRounded(painter, option.rect.adjusted(0, 2, 0, -2), sizes::rowRadius,
                    option.state & QStyle::State_Sunken ? colours::pushPressed : colours::push);
    }
    drawLine(painter, option.rect,
             fitLine(withoutMnemonic(option.text), painter.font(), option.rect.width()),
             painter.font(), isEnabled ? colours::label : colours::disabledText, Qt::AlignHCenter,
             option.direction);
}

} // namespace look

#include "look/style/Style.h"

#include "look/accessibility/Accessibility.h"
#include "look/controls/Field.h"
#include "look/style/Colours.h"
#include "look/style/FocusRing.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/style/StylePainting.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFocusFrame>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>

namespace look {
namespace {

// No list scrolls sideways: a scroll bar is a vertical one.
QRect scrollThumb(const QStyleOptionSlider& option) {
    constexpr int inset = sizes::scrollInset;
    constexpr int shortest = 24;
    const int groove = option.rect.height() - 2 * inset;
    const qint64 range = qint64(option.maximum) - option.minimum;
    if (range <= 0 || groove <= 0)
        return {};
    const qreal visible = qreal(groove) * option.pageStep / qreal(range + option.pageStep);
    const int length = qBound(qMin(shortest, groove), qRound(visible), groove);
    const int offset = inset + QStyle::sliderPositionFromValue(option.minimum, option.maximum,
                                                               option.sliderPosition,
                                                               groove - length, option.upsideDown);
    return QRect(inset, offset, option.rect.width() - 2 * inset, length)
        .translated(option.rect.topLeft());
}

// The window behind a pop-up's entries has no public type.
bool isPopUpWindow(const QWidget* widget) {
    return widget && widget->inherits("QComboBoxPrivateContainer");
}

// Of a double click the second press does nothing where the first one fell on another widget: what
// a press took away, a button or a dialog, leaves something else under the pointer that nobody
// meant.
class DoubleClicks : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // A press that a widget leaves to its parent is spontaneous only the first time.
        if (!watched->isWidgetType() || !event->spontaneous())
            return false;
        if (event->type() == QEvent::MouseButtonPress)
            first_ = watched;
        return event->type() == QEvent::MouseButtonDblClick && watched != first_;
    }

private:
    QPointer<QObject> first_;
};

} // namespace

QPalette Style::standardPalette() const {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb colour) {
        palette.setColor(QPalette::All, role, QColor(colour));
    };
    set(QPalette::Window, colours::window);
    set(QPalette::WindowText, colours::label);
    set(QPalette::Base, colours::well);
    set(QPalette::AlternateBase, colours::well);
    set(QPalette::Text, colours::labelOnWell);
    set(QPalette::PlaceholderText, colours::tertiaryOnWell);
    set(QPalette::Button, colours::push);
    set(QPalette::ButtonText, colours::label);
    set(QPalette::BrightText, colours::white);
    set(QPalette::Light, colours::pushTop);
    set(QPalette::Midlight, colours::pushHover);
    set(QPalette::Mid, colours::border);
    set(QPalette::Dark, colours::borderDisabled);
    set(QPalette::Shadow, colours::well);
    set(QPalette::Highlight, colours::selection);
    set(QPalette::HighlightedText, colours::white);
    set(QPalette::Link, colours::focusRing);
    set(QPalette::LinkVisited, colours::focusRing);
    set(QPalette::ToolTipBase, colours::toolTip);
    set(QPalette::ToolTipText, colours::label);
    // The inactive colours are the active ones: where they differ, the toolkit draws the whole
    // window a second time as soon as it becomes active, at every start. What does look different
    // asks for its own drawing.
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(colours::selectionDisabled));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText,
          QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, QColor(colours::disabledText));
    }
    return palette;
}

void Style::polish(QWidget* widget) {
    QCommonStyle::polish(widget);
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        // The one place where no label is left to guess whether a text is markup.
        if (label->textFormat() == Qt::AutoText)
            label->setTextFormat(Qt::PlainText);
    } else if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
               qobject_cast<QScrollBar*>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
        // A scroll bar has no groove of its own: what it lies on shows through.
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    } else if (qobject_cast<QMenu*>(widget) || isPopUpWindow(widget)) {
        // Round corners; the mask keeps them where nothing blends windows.
        widget->setAttribute(Qt::WA_TranslucentBackground);
    } else if (widget->inherits("QComboBoxListView")) {
        // The toolkit fills each entry's row with the window's colour.
        static_cast<QAbstractScrollArea*>(widget)->viewport()->setAutoFillBackground(false);
        QPalette palette = widget->palette();
        palette.setColor(QPalette::Window, QColor(colours::panel));
        widget->setPalette(palette);
    }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    switch (element) {
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        drawField(*painter, *option, widget);
        return;
    case PE_Frame:
        if (isPopUpWindow(widget))
            drawMenuPanel(*painter, option->rect);
        else
            drawWell(*painter, *option);
        return;
    case PE_PanelMenu:
        // A pop-up's window asks for its frame as well.
        if (!isPopUpWindow(widget))
            drawMenuPanel(*painter, option->rect);
        return;
    case PE_IndicatorCheckBox:
        drawCheckBox(*painter, *option);
        return;
    case PE_FrameMenu: // part of the panel
    case PE_FrameFocusRect:
    case PE_PanelItemViewRow:
    case PE_PanelMenuBar:
    case PE_PanelScrollAreaCorner:
        return;
    default:
        QCommonStyle::drawPrimitive(element, option, painter, widget);
    }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    switch (element) {
    case CE_PushButton:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
            drawButton(*painter, *button, widget);
        return;
    case CE_CheckBoxLabel:
        if (const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option))
            drawCheckBoxTitle(*painter, *box);
        return;
    case CE_FocusFrame:
        if (const auto* frame = qobject_cast<const QFocusFrame*>(widget); frame && frame->widget())
            drawFocusRing(*painter, *option, *frame->widget());
        return;
    case CE_ComboBoxLabel: // drawn with the control
        return;
    case CE_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            drawMenuRow(*painter, *item);
        return;
    case CE_MenuBarItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            drawMenuBarItem(*painter, *item);
        return;
    case CE_MenuBarEmptyArea:
        painter->fillRect(option->rect, QColor(colours::window));
        return;
    default:
        QCommonStyle::drawControl(element, option, painter, widget);
    }
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                               QPainter* painter, const QWidget* widget) const {
    if (control == CC_ComboBox) {
        if (const auto* comboBox = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            drawPopUp(*painter, *comboBox,
                      subControlRect(CC_ComboBox, option, SC_ComboBoxEditField, widget),
                      subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget));
        }
        return;
    }
    if (control == CC_ScrollBar) {
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option))
            drawScrollThumb(*painter, *slider, scrollThumb(*slider));
        return;
    }
    QCommonStyle::drawComplexControl(control, option, painter, widget);
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option,
                       const QWidget* widget) const {
    switch (metric) {
    case PM_DefaultFrameWidth:
        return isPopUpWindow(widget) ? sizes::menuInset : 1;
    case PM_ComboBoxFrameWidth:
        return 0;
    case PM_ScrollBarExtent:
    case PM_ScrollBarSliderMin:
        return sizes::scrollGutter;
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return sizes::focusRing;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_MenuBarItemSpacing:
        return 2;
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        // A pop-up's window has its inset from its frame.
        return qobject_cast<const QMenu*>(widget) ? sizes::menuInset - 1 : 0;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return sizes::box;
    case PM_CheckBoxLabelSpacing:
        return sizes::boxGap;
    case PM_TextCursorWidth:
        // A field draws its own cursor: the toolkit's has no colour.
        return qobject_cast<const Field*>(widget) ? 0 : 1;
    default:
        return QCommonStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returned) const {
    switch (hint) {
    case SH_ComboBox_Popup:
    case SH_FocusFrame_AboveWidget: // else a tight parent would cut it
    case SH_Menu_MouseTracking:
    case SH_MenuBar_AltKeyNavigation: // no menu has a mnemonic: Alt is the only key to them
    case SH_MenuBar_MouseTracking:
    case SH_Menu_Scrollable:
        return 1;
    case SH_Menu_Mask:
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returned);
            mask && needsWindowShape()) {
            mask->region = roundedRegion(option->rect, sizes::menuRadius);
            return 1;
        }
        return 0;
    case SH_FocusFrame_Mask: // the ring follows round corners into the control's rectangle
    case SH_UnderlineShortcut:
    case SH_ItemView_ActivateItemOnSingleClick:
        return 0;
    default:
        return QCommonStyle::styleHint(hint, option, widget, returned);
    }
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option,
                            const QWidget* widget) const {
    switch (element) {
    case SE_LineEditContents:
        // The toolkit adds two pixels at either side, and two more where it aligns to the right;
        // the text starts after the padding.
        return option->rect.adjusted(
            sizes::fieldPadding - 2, 1,
            (option->direction == Qt::RightToLeft ? 4 : 2) - sizes::fieldPadding, -1);
    case SE_CheckBoxIndicator:
        return alignedRect(option->direction, Qt::AlignLeft | Qt::AlignVCenter,
                           QSize(sizes::box, sizes::box), option->rect);
    case SE_CheckBoxContents:
        return visualRect(option->direction, option->rect,
                          option->rect.adjusted(sizes::box + sizes::boxGap, 0, 0, 0));
    case SE_CheckBoxClickRect:
    case SE_PushButtonContents:
    case SE_PushButtonFocusRect:
        return option->rect;
    default:
        return QCommonStyle::subElementRect(element, option, widget);
    }
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                            SubControl subControl, const QWidget* widget) const {
    const QRect whole = option->rect;
    if (control == CC_ComboBox) {
        switch (subControl) {
        case SC_ComboBoxEditField:
            return visualRect(option->direction, whole,
                              whole.adjusted(sizes::popUpPadding, 0,
                                             -(sizes::chevronsAt + sizes::chevronsGap), 0));
        case SC_ComboBoxArrow: {
            const QRect arrows(whole.right() + 1 - sizes::chevronsAt,
                               whole.top() + (whole.height() - sizes::chevrons.height()) / 2,
                               sizes::chevrons.width(), sizes::chevrons.height());
            return visualRect(option->direction, whole, arrows);
        }
        case SC_ComboBoxListBoxPopup:
            // The current entry's row, inset by the menu's padding, over the control's middle.
            return whole.translated(0, (whole.height() - sizes::menuRow) / 2 - sizes::menuInset);
        default:
            return whole;
        }
    }
    if (control == CC_ScrollBar) {
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (!slider)
            return {};
        const QRect thumb = scrollThumb(*slider);
        QRect part = whole;
        switch (subControl) {
        case SC_ScrollBarGroove:
            // What a dragged thumb moves along.
            return whole.adjusted(0, sizes::scrollInset, 0, -sizes::scrollInset);
        case SC_ScrollBarSlider:
            // The whole width of the gutter takes the pointer.
            return {whole.left(), thumb.top(), whole.width(), thumb.height()};
        case SC_ScrollBarSubPage:
            part.setBottom(thumb.top() - 1);
            return part;
        case SC_ScrollBarAddPage:
            part.setTop(thumb.bottom() + 1);
            return part;
        default:
            return {};
        }
    }
    return QCommonStyle::subControlRect(control, option, subControl, widget);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
    switch (type) {
    case CT_CheckBox:
        return {contents.width() + sizes::box + sizes::boxGap, qMax(contents.height(), sizes::box)};
    case CT_PushButton:
        return {contents.width() + 2 * sizes::buttonPadding, sizes::button};
    case CT_ComboBox:
        // The toolkit also makes the menu as wide as this: its rows need more than the control,
        // and the one pixel that its rounding may cut off.
        return {contents.width() + 1 + sizes::menuTextAt + sizes::menuTextEnd + sizes::menuInset,
                sizes::popUp};
    case CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            return menuRowSize(*item, contents);
        return contents;
    case CT_MenuBarItem:
        return {contents.width() + 16, sizes::menuRow};
    default:
        return QCommonStyle::sizeFromContents(type, option, contents, widget);
    }
}

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option,
                          const QWidget* widget) const {
    // A menu bar asks for this at every start, for a button that it shows only when it is cut off:
    // looking through the desktop's icons for it costs as much as loading a font.
    if (which != SP_ToolBarHorizontalExtensionButton)
        return QCommonStyle::standardIcon(which, option, widget);
    QPixmap picture(16, 16);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawChevrons(painter, QPoint(3, 1), colours::label);
    painter.end();
    return QIcon(picture);
}

void applyLook(QApplication& application) {
    auto* style = new Style;
    QApplication::setStyle(style);
    QApplication::setPalette(style->standardPalette());
    QApplication::setFont(font(13));
    keepToolTipsPlain(application);
    keepFocusRing(application);
    application.installEventFilter(new DoubleClicks(&application));
    describeOurWidgets();
}

} // namespace look

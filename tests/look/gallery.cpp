// Every control in its states on one sheet, written as a picture to compare with the design's.
// look_gallery FILE [rtl] ; QT_SCALE_FACTOR=2 gives the sheet at twice the resolution.

#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/Glyphs.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/controls/Spinner.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Style.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"
#include "look/text/Label.h"

#include <QApplication>
#include <QCheckBox>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionComboBox>
#include <QStyleOptionMenuItem>
#include <QTest>

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

using look::Button;
using look::ButtonKind;

enum State { Normal, Hover, Pressed, Focused, Disabled };
constexpr State states[] = {Normal, Hover, Pressed, Focused, Disabled};

// A pop-up that is drawn as if its menu were open.
class OpenPopUp : public look::PopUp {
public:
    using PopUp::PopUp;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setFont(font());
        QStyleOptionComboBox option;
        initStyleOption(&option);
        option.state |= QStyle::State_On;
        style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, this);
    }
};

class OpenMenu : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        QStyleOptionMenuItem option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_PanelMenu, &option, &painter, this);
        const QStringList titles{u"OpenStreetMap direkt"_s, u"Overpass · Standard"_s,
                                 u"Overpass · Alternative"_s, u"Eigene HTTPS-Adresse"_s};
        option.font = look::font(13);
        option.checkType = QStyleOptionMenuItem::Exclusive;
        for (int i = 0; i < titles.size(); ++i) {
            option.rect = QRect(5, 5 + 24 * i, width() - 10, 24);
            option.text = titles.at(i);
            option.checked = i == 0;
            option.state.setFlag(QStyle::State_Selected, i == 1);
            style()->drawControl(QStyle::CE_MenuItem, &option, &painter, this);
        }
    }
};

class Sheet : public QWidget {
public:
    Sheet() {
        resize(820, 760);
        model_.appendRow(new QStandardItem(u"Berlin"_s));
        model_.item(0)->setData(u"Deutschland"_s, look::PlaceListModel::detailRole);
        addButtons(16, u"Push button, 32"_s, ButtonKind::Push, u"Sprache"_s, 82);
        addButtons(102, u"Prominent button, 32"_s, ButtonKind::Prominent, u"Route berechnen"_s,
                   145);
        addButtons(188, u"Small button, 24 in 32"_s, ButtonKind::Small, u"Als Station …"_s, 91);
        addPopUps();
        addSegments();
        addFields();
        addRows();
        addOthers();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        for (const auto& [rectangle, radius] : rings_) {
            look::drawBand(painter, rectangle, radius, 3, look::colours::focusRing);
            look::drawBand(painter, rectangle, radius, 1, look::colours::focusRingInner);
        }
    }

private:
    static int column(int index) { return 22 + 157 * index; }

    void put(QWidget* widget, int x, int y) {
        const int left = isRightToLeft() ? width() - x - widget->width() : x;
        widget->move(left, y);
    }

    void caption(const QString& text, int x, int y, int pixels, QFont::Weight weight, QRgb colour) {
        auto* label = new look::Label(pixels, weight, colour, this);
        label->setText(text);
        label->adjustSize();
        put(label, x, y);
    }

    void head(const QString& title, const QStringList& captions, int y) {
        caption(title, column(0), y, 12, QFont::Medium, look::colours::secondary);
        for (int i = 0; i < captions.size(); ++i)
            caption(captions.at(i), column(i), y + 20, 11, QFont::Normal, look::colours::tertiary);
    }

    void ringAround(const QWidget* widget, qreal radius) {
        rings_.push_back({widget->geometry(), radius});
    }

    void addButtons(int y, const QString& title, ButtonKind kind, const QString& text, int width) {
        head(title, {u"normal"_s, u"hover"_s, u"pressed"_s, u"keyboard focus"_s, u"disabled"_s}, y);
        for (const State state : states) {
            auto* button = new Button(kind, text, this);
            std::cout << text.toStdString() << ": natural width " << button->sizeHint().width()
                      << '\n';
            button->setFixedSize(width, button->sizeHint().height());
            put(button, column(state), y + 40);
            button->setAttribute(Qt::WA_UnderMouse, state == Hover);
            button->setDown(state == Pressed);
            button->setEnabled(state != Disabled);
            if (state == Focused)
                ringAround(button, kind == ButtonKind::Small ? 6 : 7);
        }
    }

    void addPopUps() {
        head(u"Pop-up, 28"_s,
             {u"normal"_s, u"hover"_s, u"open / pressed"_s, u"keyboard focus"_s, u"disabled"_s},
             268);
        for (const State state : states) {
            look::PopUp* popUp =
                state == Pressed ? new OpenPopUp(102, this) : new look::PopUp(102, this);
            popUp->addItem(u"800 m"_s);
            put(popUp, column(state), 308);
            popUp->setAttribute(Qt::WA_UnderMouse, state == Hover);
            popUp->setEnabled(state != Disabled);
            if (state == Focused)
                ringAround(popUp, 7);
        }
    }

    void addSegments() {
        head(u"Segments, 24"_s,
             {u"normal"_s, u"hover"_s, u"pressed"_s, u"keyboard focus"_s, u"disabled"_s}, 350);
        for (const State state : states) {
            auto* segments = new look::Segments(look::SegmentsKind::Travel,
                                                {u"Auto"_s, u"Zug"_s, u"Flug"_s}, this);
            segments->setSelectedSegment(0);
            segments->adjustSize();
            put(segments, column(state), 390);
            auto* second = segments->findChildren<QAbstractButton*>().at(1);
            second->setAttribute(Qt::WA_UnderMouse, state == Hover);
            second->setDown(state == Pressed);
            segments->setEnabled(state != Disabled);
            if (state == Focused)
                ringAround(segments, 6);
        }
    }

    void addFields() {
        head(u"Field, 34"_s,
             {u"normal"_s, u"focus"_s, u"placeholder"_s, u"read-only"_s, u"disabled"_s}, 428);
        for (const State state : states) {
            auto* field = new look::Field(
                state == Focused ? look::FieldKind::Service : look::FieldKind::Search, this);
            field->setFixedWidth(141);
            put(field, column(state), 468);
            if (state == Pressed) {
                field->setPlaceholderText(u"Stadt, Ort …"_s);
            } else if (state == Focused) {
                field->setText(u"https://api.openstreetmap.org/api/0.6/map"_s);
                field->setCursorPosition(0);
                field->setReadOnly(true);
            } else {
                field->setText(u"Berlin"_s);
            }
            field->setEnabled(state != Disabled);
            if (state == Hover)
                focused_ = field;
        }
    }

    void addRows() {
        head(u"List row, 48"_s,
             {u"normal"_s, u"hover"_s, u"selected, list focused"_s, u"selected, no focus"_s,
              u"selected, disabled"_s},
             516);
        for (const State state : states) {
            auto* list = new look::PlaceList(this);
            list->setModel(&model_);
            list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
            list->setFixedSize(141, 50);
            put(list, column(state), 556);
            if (state >= Pressed)
                list->setCurrentIndex(model_.index(0, 0));
            list->setEnabled(state != Disabled);
            if (state == Hover)
                hovered_ = list;
            else if (state == Pressed)
                focusedList_ = list;
        }
    }

    void addOthers() {
        auto* menu = new OpenMenu(this);
        menu->resize(218, 106);
        put(menu, 22, 620);
        for (const bool isOn : {true, false}) {
            auto* box = new QCheckBox(isOn ? u"on, enabled"_s : u"on, disabled"_s, this);
            box->setFont(look::font(12));
            box->setChecked(true);
            box->setEnabled(isOn);
            box->resize(box->sizeHint().width(), 16);
            put(box, 538, isOn ? 620 : 645);
        }
        auto* spinner = new look::Spinner(this);
        spinner->setTurning(true);
        put(spinner, 538, 670);
        caption(u"busy"_s, 564, 670, 12, QFont::Normal, look::colours::label);
    }

public:
    // The states that only real focus and a real pointer can give.
    QImage picture(bool isListFocused) {
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            std::cerr << "the sheet did not become active\n";
        (isListFocused ? static_cast<QWidget*>(focusedList_) : focused_)->setFocus();
        QTest::mouseMove(hovered_->viewport(), QPoint(40, 20));
        QTest::qWait(50);
        return grab().toImage();
    }

private:
    QStandardItemModel model_;
    std::vector<std::pair<QRect, qreal>> rings_;
    look::Field* focused_ = nullptr;
    look::PlaceList* hovered_ = nullptr;
    look::PlaceList* focusedList_ = nullptr;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        std::cerr << "usage: look_gallery FILE [rtl]\n";
        return 2;
    }
    QApplication::setFont(QFont(u"Inter"_s));
    look::applyLook(application);
    if (argc > 2 && QLatin1String(argv[2]) == "rtl"_L1)
        QApplication::setLayoutDirection(Qt::RightToLeft);
    Sheet sheet;
    const QImage list = sheet.picture(true);
    QImage whole = sheet.picture(false);
    // One widget has the focus: the selected row of the focused list comes from the other picture.
    QPainter painter(&whole);
    const QRect row = application.layoutDirection() == Qt::RightToLeft ? QRect(333, 550, 160, 60)
                                                                       : QRect(330, 550, 155, 60);
    const qreal scale = list.devicePixelRatio();
    painter.drawImage(row, list,
                      QRectF(QPointF(row.topLeft()) * scale, QSizeF(row.size()) * scale));
    look::showToolTip(QPoint(0, 0),
                      u"Optional: eigener kompatibler HTTPS-\nRoutingdienst ohne Zugangsdaten."_s,
                      &sheet);
    if (QWidget* tip = look::shownToolTip())
        tip->render(&painter, QPoint(264, 620), QRegion(), QWidget::RenderFlags());
    painter.end();
    return whole.save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}

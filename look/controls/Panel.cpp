#include "look/controls/Panel.h"

#include "look/controls/Button.h"
#include "look/controls/Glyphs.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Label.h"

#include <QBoxLayout>
#include <QPainter>
#include <QStackedWidget>

namespace look {
namespace {

constexpr int innerWidth = 300;
constexpr int side = 24;
constexpr int gap = 10;
constexpr int leastMargin = 12; // to the window's edges
constexpr QColor veil(0, 0, 0, 255 * 3 / 10);

// The page that the panel lies in. It shows a picture of the page below: that one is hidden, so
// that no click, key, shortcut or drop and no assistive technology reaches it.
class Sheet : public QWidget {
public:
    Sheet(QWidget* covered, QWidget* panel) : covered_(covered) {
        auto* middle = new QVBoxLayout(this);
        middle->setContentsMargins(leastMargin, leastMargin, leastMargin, leastMargin);
        middle->addWidget(panel, 0, Qt::AlignCenter);
    }

protected:
    bool event(QEvent* event) override {
        const QEvent::Type type = event->type();
        if (type == QEvent::Resize)
            covered_->resize(size()); // a hidden page does not grow with the others
        if (type == QEvent::Resize || type == QEvent::WindowActivate ||
            type == QEvent::WindowDeactivate) {
            picture_ = {};
            update();
        }
        return QWidget::event(event);
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        if (picture_.isNull())
            picture_ = covered_->grab();
        QPainter painter(this);
        painter.drawPixmap(0, 0, picture_);
        painter.fillRect(rect(), veil);
    }

private:
    QWidget* covered_;
    QPixmap picture_;
};

} // namespace

Panel::Panel(PanelKind kind, const QString& heading, const QString& information,
             QStackedWidget* pages)
    : QDialog(pages), kind_(kind), pages_(pages),
      heading_(new Label(14, QFont::DemiBold, colours::label, this)),
      information_(new Label(12, colours::secondary, this)), column_(new QVBoxLayout(this)) {
    setAccessibleName(heading);
    // The window has one; the toolkit's dialogs would swallow the event.
    setContextMenuPolicy(Qt::NoContextMenu);

    for (Label* label : {heading_, information_}) {
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        label->setFixedWidth(innerWidth);
    }
    heading_->setMaximumLines(3);
    heading_->setText(heading);
    information_->setMaximumLines(sizes::mostLines);
    information_->setText(information);

    column_->setContentsMargins(side, 23, side, 24);
    column_->setSpacing(0);
    column_->addWidget(new BuildingGlyph(44, this), 0, Qt::AlignHCenter);
    column_->addSpacing(12);
    column_->addWidget(heading_);
    column_->addSpacing(4);
    column_->addWidget(information_);
}

void Panel::setAccessory(QWidget* accessory) {
    accessory_ = accessory;
    accessory->setFixedSize(innerWidth, sizes::popUp);
    // Orca 48 comes upon a pop-up without a word of the panel round it.
    accessory->setAccessibleDescription(information_->text());
    column_->addSpacing(16);
    column_->addWidget(accessory);
}

void Panel::setButtons(const QString& prominentTitle, const QString& otherTitle) {
    prominentButton_ = new Button(ButtonKind::Prominent, prominentTitle, this);
    prominentButton_->setDefault(true);
    connect(prominentButton_, &QPushButton::clicked, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    const int width = otherTitle.isEmpty() ? innerWidth : (innerWidth - gap) / 2;
    prominentButton_->setFixedWidth(width);
    if (!otherTitle.isEmpty()) {
        otherButton_ = new Button(ButtonKind::Push, otherTitle, this);
        connect(otherButton_, &QPushButton::clicked, this, &QDialog::reject);
        otherButton_->setFixedWidth(width);
        row->addWidget(otherButton_);
    }
    row->addWidget(prominentButton_);
    column_->addSpacing(18);
    column_->addLayout(row);
}

void Panel::open() {
    covered_ = pages_->currentWidget();
    pages_->setCurrentIndex(pages_->addWidget(new Sheet(covered_, this)));
}

void Panel::done(int result) {
    pages_->setCurrentWidget(covered_);
    QDialog::done(result);
    parentWidget()->deleteLater();
}

void Panel::reject() {
    done(otherButton_ ? Rejected : Accepted);
}

void Panel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBordered(painter, rect(), sizes::panelRadius, colours::panel, colours::panelOutline);
}

// Not in open(): the window may be hidden then. The toolkit's own would place a window here.
void Panel::showEvent(QShowEvent* /*event*/) {
    (accessory_ ? accessory_ : prominentButton_)->setFocus();
}

} // namespace look

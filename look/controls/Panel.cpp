#include "look/controls/Panel.h"

#include "look/controls/Button.h"
#include "look/controls/Glyphs.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Label.h"

#include <QBoxLayout>
#include <QPainter>

namespace look {

namespace {

constexpr int panelWidth = 348;
constexpr int innerWidth = 300;
constexpr int gap = 10;

} // namespace

Panel::Panel(PanelKind kind, const QString& heading, const QString& information, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), kind_(kind),
      heading_(new Label(14, QFont::DemiBold, colours::label, this)),
      information_(new Label(12, colours::secondary, this)), column_(new QVBoxLayout(this)) {
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(heading);
    setAccessibleName(heading);
    setAccessibleDescription(information);

    for (Label* label : {heading_, information_}) {
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        label->setFixedWidth(innerWidth);
    }
    heading_->setMaximumLines(3);
    heading_->setText(heading);
    information_->setMaximumLines(sizes::mostLines);
    information_->setText(information);

    const int side = (panelWidth - innerWidth) / 2;
    column_->setContentsMargins(side, 23, side, 24);
    column_->setSpacing(0);
    column_->addWidget(new BuildingGlyph(44, this), 0, Qt::AlignHCenter);
    column_->addSpacing(12);
    column_->addWidget(heading_);
    column_->addSpacing(4);
    column_->addWidget(information_);
}

void Panel::setAccessory(QWidget* accessory) {
    accessory->setFixedSize(innerWidth, sizes::popUp);
    column_->addSpacing(16);
    column_->addWidget(accessory);
}

void Panel::setButtons(const QString& prominentTitle, const QString& otherTitle) {
    prominentButton_ = new Button(ButtonKind::Prominent, prominentTitle, this);
    prominentButton_->setDefault(true);
    connect(prominentButton_, &QPushButton::clicked, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    if (otherTitle.isEmpty()) {
        prominentButton_->setFixedWidth(innerWidth);
    } else {
        otherButton_ = new Button(ButtonKind::Push, otherTitle, this);
        connect(otherButton_, &QPushButton::clicked, this, &QDialog::reject);
        otherButton_->setFixedWidth((innerWidth - gap) / 2);
        prominentButton_->setFixedWidth((innerWidth - gap) / 2);
        row->addWidget(otherButton_);
    }
    row->addWidget(prominentButton_);
    column_->addSpacing(18);
    column_->addLayout(row);
}

void Panel::reject() {
    if (otherButton_)
        QDialog::reject();
    else
        accept();
}

void Panel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBordered(painter, rect(), sizes::panelRadius, colours::panel, colours::panelOutline);
}

void Panel::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (needsWindowShape())
        setMask(roundedRegion(rect(), sizes::panelRadius));
}

void Panel::showEvent(QShowEvent* event) {
    fitHeight();
    QDialog::showEvent(event);
}

void Panel::fitHeight() {
    ensurePolished();
    setFixedSize(panelWidth, column_->totalHeightForWidth(panelWidth));
}

} // namespace look

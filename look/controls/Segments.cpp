#include "look/controls/Segments.h"

#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRadioButton>
#include <QStyle>

#include <algorithm>

namespace look {

class Segment : public QRadioButton, public Elidable {
public:
    Segment(const QString& title, const QFont& font, Segments* parent)
        : QRadioButton(parent), segments_(parent) {
        setFont(font);
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::ClickFocus);
        title_.setText(title);
        setLiteralText(this, title);
        // Also when assistive technology toggles it.
        connect(this, &QAbstractButton::toggled, parent, [this](bool isOn) {
            if (isOn)
                segments_->choose(this);
        });
    }

    int titleWidth() const { return title_.naturalWidth(font()); }
    // The tooltip of them all comes first.
    QString elidedText() const override {
        const bool isHidden = title_.within(width(), font()).isElided;
        return isHidden && segments_->toolTip().isEmpty() ? title_.text() : QString();
    }

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void keyPressEvent(QKeyEvent* event) override {
        const int forward = isRightToLeft() ? -1 : 1;
        const int key = event->key();
        const int across = int(key == Qt::Key_Right) - int(key == Qt::Key_Left);
        const int down = int(key == Qt::Key_Down) - int(key == Qt::Key_Up);
        if (across != 0 || down != 0)
            segments_->moveFrom(this, forward * across + down);
        else
            QRadioButton::keyPressEvent(event);
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const qreal radius = segments_->cornerRadius() - 2;
        QRgb text = isEnabled() ? colours::label : colours::disabledText;
        if (isChecked()) {
            text = isEnabled() ? colours::white : colours::pillDisabledText;
            fillRounded(painter, rect(), radius,
                        isEnabled() ? colours::pill : colours::pillDisabled);
        } else if (isDown()) {
            fillRounded(painter, rect(), radius, colours::segmentPressed);
        } else if (isEnabled() && underMouse()) {
            fillRounded(painter, rect(), radius, colours::segmentHover);
        }
        if (segments_->hasDividerAfter(this)) {
            const int x = isRightToLeft() ? 0 : width() - 1;
            painter.fillRect(QRect(x, 5, 1, height() - 10), QColor(colours::divider));
        }
        // Half a pixel below the middle of the smaller kind is a whole one.
        drawLine(painter, rect().adjusted(0, 1, 0, 0), title_.within(width(), font()), font(), text,
                 Qt::AlignHCenter, layoutDirection());
    }

private:
    Segments* segments_;
    FittedText title_;
};

Segments::Segments(SegmentsKind kind, const QStringList& titles, QWidget* parent)
    : QWidget(parent), kind_(kind) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    const QFont font = look::font(kind == SegmentsKind::Mode ? 13 : 12, QFont::Medium);
    segments_.reserve(size_t(titles.size()));
    for (const QString& title : titles)
        segments_.push_back(new Segment(title, font, this));
    if (!segments_.empty()) {
        setFocusProxy(segments_.front());
        segments_.front()->setFocusPolicy(Qt::StrongFocus);
    }
}

void Segments::setSelectedSegment(int index) {
    selected_ = index >= 0 && index < count() ? index : -1;
    for (int i = 0; i < count(); ++i) {
        Segment* segment = segments_[size_t(i)];
        const QSignalBlocker blocker(segment);
        // An exclusive button refuses to be unchecked, but the group knows "none" as well.
        segment->setAutoExclusive(false);
        segment->setChecked(i == selected_);
        segment->setAutoExclusive(true);
        // Where nothing is selected, the keyboard enters at the first segment.
        const bool isEntrance = i == qMax(selected_, 0);
        segment->setFocusPolicy(isEntrance ? Qt::StrongFocus : Qt::ClickFocus);
        if (isEntrance)
            setFocusProxy(segment);
        segment->update(); // its divider depends on its neighbour
    }
}

int Segments::cornerRadius() const {
    return kind_ == SegmentsKind::Mode ? sizes::radius : sizes::smallRadius;
}

// Between two segments that are both not selected.
bool Segments::hasDividerAfter(const Segment* segment) const {
    const int index = indexOf(segment);
    return index + 1 < count() && index != selected_ && index + 1 != selected_;
}

int Segments::segmentWidth() const {
    constexpr int padding = 8;
    int width = kind_ == SegmentsKind::Mode ? 100 : 46;
    for (const Segment* segment : segments_)
        width = qMax(width, segment->titleWidth() + 2 * padding);
    return width;
}

QSize Segments::sizeHint() const {
    return {count() * segmentWidth() + 4, kind_ == SegmentsKind::Mode ? 30 : sizes::smallControl};
}

void Segments::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawBordered(painter, rect(), cornerRadius(),
                 isEnabled() ? colours::track : colours::trackDisabled,
                 isEnabled() ? colours::trackLine : colours::trackLineDisabled);
}

bool Segments::event(QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutDirectionChange)
        place();
    return QWidget::event(event);
}

void Segments::place() {
    const QRect inner = rect().adjusted(2, 2, -2, -2);
    for (int i = 0; i < count(); ++i) {
        const int left = inner.left() + inner.width() * i / count();
        const int right = inner.left() + inner.width() * (i + 1) / count();
        const QRect place(left, inner.top(), right - left, inner.height());
        segments_[size_t(i)]->setGeometry(QStyle::visualRect(layoutDirection(), inner, place));
    }
}

int Segments::indexOf(const Segment* segment) const {
    return int(std::find(segments_.begin(), segments_.end(), segment) - segments_.begin());
}

void Segments::choose(const Segment* segment) {
    const int index = indexOf(segment);
    const bool isChange = index != selected_;
    setSelectedSegment(index);
    if (isChange)
        Q_EMIT selectionChanged(index);
}

void Segments::moveFrom(const Segment* segment, int step) {
    const int index = selected_ < 0 ? indexOf(segment) : selected_ + step;
    if (index < 0 || index >= count())
        return;
    Segment* next = segments_[size_t(index)];
    next->setFocus(Qt::TabFocusReason);
    // Last: a slot may disable or delete anything.
    next->setChecked(true);
}

} // namespace look

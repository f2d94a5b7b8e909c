#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

namespace look {

enum class SegmentsKind {
    Mode,  // 30 high, segments of at least 100
    Travel // 24 high, segments of at least 46
};

class Segment;

// One choice out of a few, side by side in equal widths. Assistive technology sees a group (give it
// an accessible name) of radio buttons. Tab reaches the selected segment; the arrow keys move the
// selection. Invariant: exactly the selected segment is checked. Main thread.
class Segments : public QWidget {
    Q_OBJECT
public:
    Segments(SegmentsKind kind, const QStringList& titles, QWidget* parent = nullptr);

    int count() const { return int(segments_.size()); }
    // -1: none.
    int selectedSegment() const { return selected_; }
    // Emits nothing. An index that does not exist selects none.
    void setSelectedSegment(int index);
    int cornerRadius() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    // Only a person's change.
    void selectionChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    friend class Segment;

    void choose(const Segment* segment);
    // Moves the selection by `step` segments from `segment`, not beyond the ends.
    void moveFrom(const Segment* segment, int step);
    void place();
    bool hasDividerAfter(const Segment* segment) const;
    int indexOf(const Segment* segment) const;
    int segmentWidth() const;

    SegmentsKind kind_;
    int selected_ = -1;
    std::vector<Segment*> segments_; // children of this
};

} // namespace look

#include "look/controls/Button.h"

#include "look/style/Sizes.h"
#include "look/text/Fonts.h"

#include <QShortcutEvent>

namespace look {
namespace {

constexpr int glyphRoom = sizes::glyph + sizes::glyphGap;
// The prominent button changes its title while it works; at this width nothing jumps.
constexpr int prominentMinimumWidth = 148;

} // namespace

Button::Button(ButtonKind kind, const QString& title, QWidget* parent)
    : QPushButton(parent), kind_(kind) {
    setFont(kind == ButtonKind::Small ? look::font(11, QFont::Medium)
                                      : look::font(13, QFont::Medium));
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setTitle(title);
}

void Button::setGlyph(ButtonGlyph glyph) {
    glyph_ = glyph;
    updateGeometry();
    update();
}

void Button::setTitle(const QString& title) {
    title_.setText(title);
    setText(literal(title));
    describe();
}

// A description of its own comes before the tooltip, which the toolkit reads out otherwise. Nothing
// is measured for who cannot see the button yet.
void Button::describe() {
    if (!isVisible())
        return;
    const QString description = toolTip().isEmpty() ? elidedText() : QString();
    if (accessibleDescription() != description)
        setAccessibleDescription(description);
}

int Button::cornerRadius() const {
    return kind_ == ButtonKind::Small ? sizes::smallRadius : sizes::radius;
}

int Button::sidePadding() const {
    return kind_ == ButtonKind::Prominent ? 19
           : kind_ == ButtonKind::Small   ? 11
                                          : sizes::buttonPadding;
}

// A title that just fits its fixed width may come closer to the edges than the padding.
int Button::titleRoom() const {
    constexpr int closest = 8;
    return width() - 2 * closest - (glyph_ == ButtonGlyph::None ? 0 : glyphRoom);
}

const Line& Button::shownTitle() const {
    return title_.within(titleRoom(), font());
}

QString Button::elidedText() const {
    return shownTitle().isElided ? title() : QString();
}

QSize Button::sizeHint() const {
    int width = title_.naturalWidth(font()) + 2 * sidePadding();
    if (glyph_ != ButtonGlyph::None)
        width += glyphRoom;
    if (kind_ == ButtonKind::Prominent)
        width = qMax(width, prominentMinimumWidth);
    return {width, kind_ == ButtonKind::Small ? sizes::smallControl : sizes::button};
}

bool Button::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::Shortcut:
        // At once: the toolkit would first show the button pressed for a tenth of a second, in
        // which what it is to stop may have ended, and something else begun.
        if (!static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
            click();
            return true;
        }
        break;
    case QEvent::FontChange:
        title_.forget();
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        // Disabled it looks the same in both.
        if (kind_ == ButtonKind::Prominent && isEnabled())
            update();
        break;
    default:
        break;
    }
    const bool isHandled = QPushButton::event(event);
    if (event->type() == QEvent::Show || event->type() == QEvent::Resize)
        describe();
    return isHandled;
}

} // namespace look

#include "Accessibility.h"

#include "Panel.h"
#include "Segments.h"

#include <QAccessibleWidget>

namespace look {

namespace {

QAccessibleInterface* interfaceFor(const QString& /*className*/, QObject* object) {
    if (auto* segments = qobject_cast<Segments*>(object)) {
        return new QAccessibleWidget(segments, QAccessible::Grouping);
    }
    if (auto* panel = qobject_cast<Panel*>(object)) {
        return new QAccessibleWidget(panel, panel->kind() == PanelKind::Alert
                                                ? QAccessible::AlertMessage
                                                : QAccessible::Dialog);
    }
    return nullptr;
}

} // namespace

// Installing the same factory again changes nothing.
void describeOurWidgets() {
    QAccessible::installFactory(interfaceFor);
}

} // namespace look

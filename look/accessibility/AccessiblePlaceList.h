#pragma once

class QAccessibleInterface;

namespace look {

class PlaceList;

// A list of places as assistive technology sees it: every row is there while the list is, whether
// or not it is scrolled into view. The toolkit's own list hides what is scrolled away, and a reader
// that counts what shows (Orca 48 does) speaks of five rows where there are eight. Owned by the
// toolkit.
QAccessibleInterface* accessibleOf(PlaceList* list);

} // namespace look

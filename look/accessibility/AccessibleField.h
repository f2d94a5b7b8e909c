#pragma once

class QAccessibleInterface;

namespace look {

class Field;

// A field as assistive technology reads and edits it. The toolkit's own says of every letter that
// its format ends where it begins, and a reader that reads format by format (Orca 43 does) leaves
// out the last letter. Owned by the toolkit.
QAccessibleInterface* accessibleOf(Field* field);

} // namespace look

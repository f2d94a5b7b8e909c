#pragma once

namespace look {

// Makes assistive technology see our own widgets as what they are (a group, a dialog, an alert).
// Costs nothing until such a technology asks. May be called any number of times.
void describeOurWidgets();

} // namespace look

// What screen readers and other assistive technology are told about the picture.
#pragma once

namespace Tracelyn {

class CChildView;

// From now on a view is a chart; its name says so, and its description and value are the console's values at
// the cursor. To be called once the application exists; doing it again changes nothing.
void DescribeViews();

// Tells whoever listens that the values of the view have changed. Costs nothing while nobody does.
void TellValuesChanged(CChildView& view);

} // namespace Tracelyn

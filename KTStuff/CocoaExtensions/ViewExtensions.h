// Small operations that every view has. Thread: main.
#pragma once

#include "Core/Geometry.h"

namespace halvorn {

class SystemFacts;
class View;

namespace KTViewExtensions {

enum class LightAqua { No, Yes };  // whether a view is light in a dark desktop too
enum class PreferTop { No, Yes };  // when not all of it fits
enum class Animated { No, Yes };   // or at once

// Makes the view the frontmost of its superview's; without a superview nothing happens.
void bringToFrontInsideSuperView(View& view);

// Scrolls up or down over time, as little as brings the rectangle (in the view's coordinates, as
// Platform/window/ScrollViews.h has them) into view; a horizontal offset is taken back to 0. Of a rectangle that is
// higher than what is seen, its upper end is brought into view for Yes, else its lower one. False, and
// nothing is done, when the rectangle is seen already; an edge that just meets the upper end of what is seen
// counts as not seen.
bool animatedVerticalScrollRectToVisible(View& view, Rect rect, PreferTop preferTop);

// Scrolls at once, whatever `animated` says. False when nothing had to be scrolled.
bool scrollRectToVisible(View& view, const Rect& rect, Animated animated);

// Scrolls over time until the point is the lower left corner of what is seen, as near as the document goes.
void scrollPointAnimated(View& view, const Point& point);

// Holds the view to the light appearance, or lets it inherit its window's again. Does nothing on systems
// older than 10.14, which have no appearances.
void useLightAquaAppearance(View& view, LightAqua light, const SystemFacts& system);

}  // namespace KTViewExtensions
}  // namespace halvorn

// Small operations that every view has. Thread: main.
#pragma once

namespace halvorn {

class SystemInfo;
class View;

namespace ViewExtensions {

enum class LightAqua { No, Yes };

// Holds the view to the light appearance, or lets it inherit its window's again. Does nothing on systems
// older than 10.14, which have no appearances.
void useLightAquaAppearance(View& view, LightAqua light, const SystemInfo& system);

}  // namespace ViewExtensions
}  // namespace halvorn

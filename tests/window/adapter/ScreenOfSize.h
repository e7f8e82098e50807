// A screen of any size and scale for the window's probe program, without a display.
#pragma once

#include <string>
#include <vector>

#include "tests/support/TestFiles.h"

namespace halvorn {

struct ScreenSize {
  int width;
  int height;
};

// The environment of a program on that screen, which is described in a file of that folder; its home is there, too.
inline std::vector<std::string> environmentOnScreen(const std::string& folder, ScreenSize screen,
                                                    const std::string& scale, int points) {
  const std::string file = folder + "/screen.json";
  putFile(file, R"({"screens":[{"name":"one","x":0,"y":0,"width":)" + std::to_string(screen.width) +
                    R"(,"height":)" + std::to_string(screen.height) +
                    R"(,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
  return {"QT_QPA_PLATFORM=offscreen:configfile=" + file,
          "QT_SCALE_FACTOR=" + scale,
          "KT_PROBE_POINTS=" + std::to_string(points),
          "LANG=C.UTF-8",
          "PATH=/usr/bin:/bin",
          "HOME=" + folder,
          "XDG_RUNTIME_DIR=" + folder};
}

}  // namespace halvorn

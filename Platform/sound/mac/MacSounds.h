// Sounds by the system's own class, which plays them as its alerts do.
#pragma once

#include <memory>

#include "Platform/sound/Sounds.h"

namespace halvorn {

class MacSounds : public Sounds {
 public:
  MacSounds();
  ~MacSounds() override;
  Result soundWithData(const Text& path, const std::string& data) override;
  void endAll() override;

  // Whether endAll() was called. Thread: any.
  [[nodiscard]] bool hasEnded() const;

  // Those that play now.
  struct Playing;

 private:
  std::shared_ptr<Playing> playing_;
};

}  // namespace halvorn

// Installations by the administrator's tool whose every call is recorded.
#pragma once

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/rights/adapter/attacks/ToolRecord.h"

namespace halvorn {

class TracedInstall : public AttackTest {
 protected:
  void SetUp() override;

  // Something of every kind, and something in the way of each.
  static void fill(AttackScene& scene, const std::string& target);

  struct Traced {
    int status = 0;
    std::vector<Call> calls;
  };
  // The options are the tracer's.
  static Traced install(AttackScene& scene, const std::string& target,
                        const std::vector<std::string>& options = {});
};

}  // namespace halvorn

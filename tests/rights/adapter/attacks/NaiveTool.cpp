// kt_naive_tool SOURCE DESTINATION [WRAPPER]: the tool as one would write it in an afternoon.
#include "tests/rights/adapter/attacks/NaiveInstall.h"

int main(int, char** words) {
  return halvorn::NaiveInstall::install(words[1], words[2], words[3] != nullptr ? words[3] : "");
}

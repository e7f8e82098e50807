#include "train/InstallRights.h"

#include <unistd.h>

#include <memory>

#include "Platform/rights/posix/Requester.h"

namespace halvorn {

std::optional<InstallRights> installRights() {
  InstallRights rights;
  rights.trashOwner = personOfThisProcess();
  if (::geteuid() != 0) return rights;
  const Requester requester = requesterOfThisProcess();
  if (requester.kind == Requester::Kind::Unknown) return std::nullopt;
  rights.files.links = LinksInTheWay::Refused;
  rights.files.pins = std::make_shared<FolderPins>();
  rights.files.ownership = Ownership::ThisProcess;
  if (requester.account) {
    rights.trashOwner = personOf(*requester.account);
    rights.files.readAs = rights.trashOwner;
  }
  return rights;
}

}  // namespace halvorn

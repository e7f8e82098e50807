#include "train/InstallRights.h"

#include <unistd.h>

#include <memory>

namespace halvorn {

std::optional<InstallRights> installRights() {
  InstallRights rights;
  rights.trashOwner = personOfThisProcess();
  if (::geteuid() != 0) return rights;
  const Requester requester = requesterOfAdministratorRights();
  if (requester.isUnknown) return std::nullopt;
  rights.files.links = LinksInTheWay::Refused;
  rights.files.pins = std::make_shared<FolderPins>();
  rights.files.ownership = Ownership::ThisProcess;
  if (requester.person) {
    rights.files.readAs = requester.person;
    rights.trashOwner = *requester.person;
  }
  return rights;
}

}  // namespace halvorn

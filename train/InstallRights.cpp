#include "train/InstallRights.h"

#include <unistd.h>

namespace halvorn {

std::optional<InstallRights> installRights() {
  InstallRights rights{.files = {}, .trashOwner = personOfThisProcess()};
  if (::geteuid() != 0) return rights;
  const Requester requester = requesterOfAdministratorRights();
  if (requester.isUnknown) return std::nullopt;
  rights.files = {
      .links = LinksInTheWay::Refused, .readAs = requester.person, .ownership = Ownership::ThisProcess};
  if (requester.person) rights.trashOwner = *requester.person;
  return rights;
}

}  // namespace halvorn

// Extended attributes and access lists as one system has them. Each system's folder defines these.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace halvorn::AttributeCalls {

enum class Reach {
  Open,   // the descriptor is the item
  Named,  // the descriptor is its folder, open; a link is not followed. To read only
  Held,   // the descriptor is the item, which is not open but held. To write only
};

struct Item {
  Reach reach = Reach::Open;
  int descriptor = -1;
  std::string name = {};  // when Named
};

// Each answers -1 and sets errno on failure, ERANGE when there is not enough room. Without room list and get
// say how much they want. Names end with NUL.
[[nodiscard]] ssize_t list(const Item& item, char* buffer, std::size_t room);
[[nodiscard]] ssize_t get(const Item& item, const std::string& name, char* buffer, std::size_t room);
[[nodiscard]] int set(const Item& item, const std::string& name, std::string_view value);
// Takes away what the folder above has handed down to a new item: its own list; and the one that an item
// which is a folder would hand down itself.
[[nodiscard]] int removeAccessList(const Item& item);
[[nodiscard]] int removeListToHandDown(const Item& item);

// Whether the error says that there is no such attribute.
[[nodiscard]] bool isMissing(int error);

enum class Kind {
  Persons,     // anybody may give it to a file of their own
  AccessList,  // who may do what; changes the mode, too
  Places,      // speaks of the place; the system gives a new item one that fits
  Systems,     // of the system's own
};
[[nodiscard]] Kind kindOf(std::string_view name);

}  // namespace halvorn::AttributeCalls

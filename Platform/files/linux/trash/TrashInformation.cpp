#include <cmath>
#include <ctime>
#include <string_view>

#include "Platform/files/linux/trash/TrashFolder.h"

namespace halvorn::TrashInformation {
namespace {

constexpr std::size_t kLongestFileName = 255;
constexpr std::size_t kRoomForSuffix = std::string_view(".trashinfo").size();

bool isUnreserved(unsigned char byte) {
  const bool isDigit = byte >= '0' && byte <= '9';
  const bool isLetter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
  return isDigit || isLetter ||
         std::string_view("-_.!~*'()/").find(static_cast<char>(byte)) != std::string_view::npos;
}

// At most `room` bytes of the name, not ending within a UTF-8 character.
std::string shortened(const std::string& name, std::size_t room) {
  if (name.size() <= room) return name;
  std::size_t end = room;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  return name.substr(0, end > 0 ? end : room);
}

}  // namespace

std::string percentEncoded(const std::string& path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (isUnreserved(byte)) {
      result.push_back(character);
    } else {
      result.push_back('%');
      result.push_back(digits[byte >> 4]);
      result.push_back(digits[byte & 15]);
    }
  }
  return result;
}

std::string deletionDate(Date when) {
  const auto seconds = static_cast<std::time_t>(std::floor(when.secondsSince1970));
  std::tm parts{};
  char buffer[32] = {};
  if (::localtime_r(&seconds, &parts) != nullptr)
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%S", &parts);
  return buffer;
}

std::string text(const std::string& path, Date when) {
  return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + deletionDate(when) + "\n";
}

std::string nameForAttempt(const std::string& name, int attempt) {
  const std::size_t room = kLongestFileName - kRoomForSuffix;
  if (attempt == 1) return shortened(name, room);
  const std::size_t dot = name.rfind('.');
  const bool hasExtension = dot != std::string::npos && dot > 0 && name.size() - dot <= 16;
  const std::string extension = hasExtension ? name.substr(dot) : "";
  const std::string number = std::to_string(attempt);
  const std::string tail = " " + number + extension;
  return shortened(name.substr(0, name.size() - extension.size()), room - tail.size()) + tail;
}

}  // namespace halvorn::TrashInformation

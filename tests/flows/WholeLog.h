// Whole logs of the installer, written without the folders and times of one run:
//
//   EXPECT_EQ(wholeLog(), kPlainStart + kInstallClicked + installLog());
#pragma once

#include <map>
#include <string>
#include <vector>

namespace halvorn {

using Lines = std::vector<std::string>;

[[nodiscard]] Lines operator+(Lines first, const Lines& second);

// Where things are in one run, and what stands for it.
using Places = std::vector<std::pair<std::string, std::string>>;

// The lines with the places replaced, and when and at which attempt each quitting ended by "gone after #s". A
// program that was gone before it could be asked is told apart: "gone before the first request".
[[nodiscard]] Lines withoutPlaces(const Lines& lines, const Places& places);

// From the arguments up to the last line of start-up. `updated` holds what differs from an installation of
// "<image>/Sample.app" in ~/Applications, as the log prints it; an empty value leaves the key out.
[[nodiscard]] Lines startLog(const Lines& arguments, const std::map<std::string, std::string>& updated = {});
// From the copy to the launched product.
[[nodiscard]] Lines installLog(const std::string& destination = "<home>/Applications/Sample.app");
// The parts of most logs. Of an installer with nothing but its source:
inline const Lines kPlainStart = startLog({"-sourcePath", "<image>/Sample.app"});
inline const Lines kInstallClicked = {"Install"};
inline const Lines kQuitObeyed = {"Quitting 'SMPL': Sample", "quit Sample: gone after #s (# attempts)"};
// The words in the log's list of arguments.
[[nodiscard]] std::string argumentsLine(const Lines& arguments);
[[nodiscard]] std::string updatedLine(const std::map<std::string, std::string>& updated);

}  // namespace halvorn

// Paths as texts: splitting and joining, without asking any file system.
//
// A path ending in slashes means the same as without them, "/" apart, and slashes in a row the same as one:
// no path made here has either. Nothing here resolves "." or "..".
#pragma once

#include <functional>
#include <vector>

#include "Core/Text.h"

namespace halvorn::Paths {

// "/a/b.app/" -> "b.app"; "/" -> "/"; "" -> "".
[[nodiscard]] Text lastComponent(const Text& path);
// "/a/b" -> "/a"; "/a" -> "/"; "/" -> "/"; "a" -> "".
[[nodiscard]] Text deletingLastComponent(const Text& path);
// appending("/a", "b") -> "/a/b"; appending("/", "b") -> "/b"; appending("", "b") -> "b".
[[nodiscard]] Text appending(const Text& path, const Text& component);
// "/a/b.tar.gz" -> "gz"; "" for none, for ".hidden" and for a name that ends in ".".
[[nodiscard]] Text extension(const Text& path);
// "/a/b.app/" -> "/a/b"; "/a/.hidden" -> "/a/.hidden".
[[nodiscard]] Text deletingExtension(const Text& path);
// "/Volumes/NAS/x" -> "/", "Volumes", "NAS", "x"; slashes in a row count once.
[[nodiscard]] std::vector<Text> components(const Text& path);
[[nodiscard]] bool isAbsolute(const Text& path);  // begins with "/"

// The home folder of the account of that name; nullopt when there is no such account.
using HomeOfAccount = std::function<OptionalText(const Text& account)>;
// "~" and "~/x" with the home folder put in, "~name" and "~name/x" with that account's; any
// other path, and that of an account which does not exist, unchanged. Who knows that no
// account is named gives no `homeOfAccount`.
[[nodiscard]] Text expandingTilde(const Text& path, const Text& home,
                                  const HomeOfAccount& homeOfAccount = {});
// The home folder and what lies below it with "~" for it; any other path unchanged.
[[nodiscard]] Text abbreviatingWithTilde(const Text& path, const Text& home);

}  // namespace halvorn::Paths

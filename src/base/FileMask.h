#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace vornhale::base {

/// Whether a file name matches a mask of "?" (one character) and "*" (any run), compared
/// without regard to case, as masks always matched on the operator's system.
bool matchesMask(std::string_view name, std::string_view mask);

/// Deletes the files of `folder` whose names match `mask`; calls `before` with each name
/// first. Returns how many were deleted. A missing folder deletes nothing.
int deleteByMask(const std::filesystem::path& folder, std::string_view mask,
                 const std::function<void(const std::filesystem::path&)>& before = {});

/// The file `name` in `folder`, its name compared without regard to case as the operator's
/// system compares it; an exact match wins. Empty when there is none.
std::filesystem::path findFileNoCase(const std::filesystem::path& folder, std::string_view name);

} // namespace vornhale::base

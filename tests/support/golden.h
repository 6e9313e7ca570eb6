// The folders of the golden cases.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvane::test {

extern const std::filesystem::path golden;

/// What stands in a folder, in the order of the names.
std::vector<std::filesystem::path> subfolders(const std::filesystem::path& folder);

/// The folders of all cases.
std::vector<std::filesystem::path> goldencases();

/// The words of a case's command.
std::vector<std::string> goldenwords(const std::filesystem::path& folder);

}  // namespace tolvane::test

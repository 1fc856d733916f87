#pragma once

#include <string>
#include <vector>

inline constexpr char kProducerFileName[] = "ZrGVTL.cti";
inline constexpr char kProducerPathVariable[] = "GENICAM_GENTL64_PATH";

/// The folder of the bundled producer: `../cti` beside the folder of the program's own file.
std::string GetBundledProducerFolder();

/// The search path that has a folder in it as well. Alone where there is none yet; else behind the folders that the
/// user chose, since the first folder that has a producer of that name wins.
std::string JoinSearchPath(const std::string& strUsersPath, const std::string& strBundledFolder);

/// Puts the bundled producer's folder into the search path of this process, so that nobody has to.
void AddBundledProducerToSearchPath();

/// The folders of the search path as it is now, in order.
std::vector<std::string> GetSearchPath();

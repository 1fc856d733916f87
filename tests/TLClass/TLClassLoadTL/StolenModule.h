#pragma once

#include <string>

/// Takes a library's module away from under whoever has loaded it once, without unmapping it: from then on the system
/// refuses to close it. Works for libraries that the program itself is linked with.
void CloseBehindTheBackOfItsOwner(const std::string& strPath);

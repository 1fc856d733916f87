#pragma once

#include <string>

/// The shortest text that reads back as the same number, whatever the locale.
std::string NumberText(double fValue);

/// With a fixed number of digits behind the point, whatever the locale: "29.97".
std::string NumberText(double fValue, int nDigits);

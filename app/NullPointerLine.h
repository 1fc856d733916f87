#pragma once

/// Tells whoever debugs the program that there was no memory for an object of the window.
/// @return false, for the operation to hand on
bool ReportNullPointer(const char* pFile, int nLine, const char* pFunction);

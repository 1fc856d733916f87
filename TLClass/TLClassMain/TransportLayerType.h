#pragma once

/// What a record's TLType says for GigE Vision, to the letter. It decides the class of a module.
inline constexpr const char* kGevTLType = "GEV";

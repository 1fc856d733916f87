#pragma once

/// Base of what is particular to one kind of transport layer. A holder of the base learns the kind by a dynamic_cast.
struct SPECIAL_INFO {
    SPECIAL_INFO() = default;
    SPECIAL_INFO(const SPECIAL_INFO&) = default;
    SPECIAL_INFO(SPECIAL_INFO&&) = default;
    SPECIAL_INFO& operator=(const SPECIAL_INFO&) = default;
    SPECIAL_INFO& operator=(SPECIAL_INFO&&) = default;
    virtual ~SPECIAL_INFO() = default;
};

#pragma once

/// Base of everything that events call. Whoever takes a callback keeps a clone of it and calls that; the caller's own
/// object may go at once.
class IEventCallback {
public:
    virtual ~IEventCallback() = default;
    /// A new object that the caller of Clone owns.
    virtual IEventCallback* Clone() = 0;

protected:
    IEventCallback() = default;
    IEventCallback(const IEventCallback&) = default;
    IEventCallback& operator=(const IEventCallback&) = default;
};

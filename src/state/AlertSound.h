#pragma once

namespace ambrel {

/// Sounds the system alert once; replaceable so that tests can count. Main thread; returns at once.
class AlertSound
{
public:
    virtual ~AlertSound() = default;
    virtual void play() = 0;
};

} // namespace ambrel

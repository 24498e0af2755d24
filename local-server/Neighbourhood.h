#pragma once

#include "local-server/Geography.h"
#include "local-server/LocalServerOptions.h"

#include <vector>

namespace ambrel::local {

struct Walk;

/// A place with simulated people around it, since some moment.
struct Neighbourhood
{
    Coordinates centre;
    Moment since{};
    Moment nextSeeMe{}; ///< before this moment nobody sends a See Me of their own
};

/// The simulated people: who they are and where they walk. Their positions are a function of the time alone.
class Neighbours
{
public:
    Neighbours(int people, quint32 seed, double walkingPace);
    ~Neighbours();

    int count() const;
    /// Where neighbour number `index` is at `now`.
    Coordinates position(const Neighbourhood &neighbourhood, int index, Moment now) const;

private:
    std::vector<Walk> m_walks;
    double m_pace;
};

} // namespace ambrel::local

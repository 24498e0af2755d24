#include "local-server/Neighbourhood.h"

#include "local-server/Walk.h"

namespace ambrel::local {

Neighbours::Neighbours(int people, quint32 seed, double walkingPace) : m_pace(walkingPace)
{
    m_walks.reserve(std::size_t(people));
    for (int index = 0; index < people; ++index)
        m_walks.push_back(walkOf(index, seed));
}

Neighbours::~Neighbours() = default;

int Neighbours::count() const
{
    return int(m_walks.size());
}

Coordinates Neighbours::position(const Neighbourhood &neighbourhood, int index, Moment now) const
{
    const Walk &walk = m_walks[std::size_t(index)];
    const std::chrono::duration<double, std::milli> walked = (now - neighbourhood.since) * m_pace;
    return walk.positionAfter(neighbourhood.centre, walked / walk.period);
}

} // namespace ambrel::local

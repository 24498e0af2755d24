#include "model/Bytes.h"

#include "tasks/Worker.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace ambrel {

void Bytes::reserve(std::size_t size)
{
    if (size <= m_capacity && m_data)
        return;
    auto *const grown = static_cast<char *>(std::realloc(m_data.get(), size + padding));
    if (!grown)
        throw std::bad_alloc();
    (void)m_data.release(); // realloc has freed or moved it
    m_data.reset(grown);
    m_capacity = size;
    std::memset(grown + m_size, 0, padding);
}

void Bytes::append(std::string_view more)
{
    if (more.empty())
        return;
    if (m_size + more.size() > m_capacity)
        reserve(std::max(m_size + more.size(), m_capacity * 2));
    std::memcpy(m_data.get() + m_size, more.data(), more.size());
    m_size += more.size();
    std::memset(m_data.get() + m_size, 0, padding);
}

std::shared_ptr<Bytes> makeSharedBytes()
{
    constexpr std::size_t large = std::size_t{1024} * 1024;
    return {new Bytes, [](Bytes *last) { // owned by the pointer
                std::unique_ptr<Bytes> bytes(last);
                if (bytes->capacity() >= large)
                    destroyOnWorker(std::move(bytes));
            }};
}

} // namespace ambrel

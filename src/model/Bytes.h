#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ambrel {

/// A growing block of bytes that always ends in spare room, so that the JSON parser can read past the end.
/// Growing moves pages instead of copying them. Not thread-safe; hand it over whole.
class Bytes
{
public:
    /// Unused, readable bytes that always follow the content.
    static constexpr std::size_t padding = 128;

    Bytes() = default;
    explicit Bytes(std::string_view content) { append(content); }

    /// Makes room for `size` bytes in all. Throws std::bad_alloc.
    void reserve(std::size_t size);
    /// Adds `more` at the end. Throws std::bad_alloc.
    void append(std::string_view more);

    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return m_capacity; }
    std::string_view view() const { return {m_data.get(), m_size}; }
    char *data() { return m_data.get(); }

private:
    struct Free
    {
        void operator()(char *data) const { std::free(data); }
    };
    std::unique_ptr<char, Free> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

/// An empty block to be shared. Whoever lets go of it last, on whatever thread, a large block is given back to the
/// system on the worker pool: that takes a millisecond for every ten to twenty megabytes.
std::shared_ptr<Bytes> makeSharedBytes();

} // namespace ambrel

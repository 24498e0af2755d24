#include <array>
#include <cstring>

// Copies more or less than there is room for, which the compiler cannot know: a call that hardening checks at run time.
int main(int count, char **texts)
{
    std::array<char, 8> room{};
    std::memcpy(room.data(), texts[0], static_cast<std::size_t>(count));
    return room[0];
}

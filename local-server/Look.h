#pragma once

#include <QRgb>

namespace ambrel::local {

enum class Hair { Short, Curly, Long, Bob, Bun, Bald, Headscarf, Afro };
enum class Beard { None, Stubble, Full };
enum class Glasses { None, Round, Sun };
enum class Scene { Park, City, Sea, Cafe, Mountains, Studio };
inline constexpr int sceneCount = int(Scene::Studio) + 1;

/// What a person looks like in a drawn portrait.
struct Look
{
    QRgb skin;
    QRgb hairColor; ///< of the headscarf, for somebody who wears one
    Hair hair;
    Beard beard;
    Glasses glasses;
    QRgb clothes;
    Scene home; ///< background of the first photo
};

} // namespace ambrel::local

#include "local-server/People.h"

#include <array>

namespace ambrel::local {

namespace {

constexpr std::array everybody = {
    Person{u"amelie",
           u"Amélie Laurent",
           u"Bakes too much bread and looks for somebody to share it with.",
           u"Can you see me? I have the yellow scarf.",
           u"Yes! I am by the fountain.",
           4,
           {0xffe9b796, 0xff5a3422, Hair::Bob, Beard::None, Glasses::None, 0xff2f6f8f, Scene::Park}},
    Person{u"kwame",
           u"Kwame Mensah",
           u"Trumpet player. Knows every late-night noodle bar in town.",
           u"Can you see me? I am carrying the trumpet.",
           u"Yes, over here with the trumpet case!",
           3,
           {0xff7a4a2c, 0xff1d1512, Hair::Short, Beard::Full, Glasses::None, 0xffd98a2b, Scene::City}},
    Person{u"yuki",
           u"佐藤 由紀",
           u"本と珈琲と長い散歩が好きです。Ask me about the best bookshop here.",
           u"Can you see me? I am the one with the red book.",
           u"Yes! Bench on the left, red book.",
           4,
           {0xfff0c9a6, 0xff1c1a22, Hair::Long, Beard::None, Glasses::Round, 0xffb5485d, Scene::Cafe}},
    Person{u"noor",
           u"نور الحسن",
           u"أحب المشي والقهوة. Architect, draws houses on napkins.",
           u"Can you see me? Blue headscarf, by the steps.",
           u"Yes, I am waving from the steps!",
           3,
           {0xffd9a074, 0xff3c6ea8, Hair::Headscarf, Beard::None, Glasses::None, 0xff27496d, Scene::Mountains}},
    Person{u"soren",
           u"Søren Åkesson",
           u"Builds boats, sails them, mends them again.",
           u"Can you see me? Green jumper, hard to miss.",
           u"Yes! Walking towards you now.",
           2,
           {0xfff3c5a5, 0xffd8a650, Hair::Short, Beard::Stubble, Glasses::None, 0xff3f7d58, Scene::Sea}},
    Person{u"ngozi",
           u"Ngọzi Okafor",
           u"Runner, aunt of seven, terrible at chess and proud of it.",
           u"Can you see me? I just sat down by the trees.",
           u"Yes, under the big tree.",
           4,
           {0xff5f3825, 0xff20140f, Hair::Afro, Beard::None, Glasses::None, 0xffe0a63a, Scene::Park}},
    Person{u"mateo",
           u"Mateo Núñez",
           u"Cartographer. Gets lost only on purpose.",
           u"Can you see me? I am holding a map, of course.",
           u"Yes! Look for the paper map.",
           3,
           {0xffcf9468, 0xff2b1a12, Hair::Curly, Beard::Stubble, Glasses::None, 0xff8d3b3b, Scene::City}},
    Person{u"zofia",
           u"Zofia Wiśniewska",
           u"Restores old cinema posters. Always up for a matinée.",
           u"Can you see me? Round glasses, grey coat.",
           u"Yes, in front of the cinema.",
           2,
           {0xfff4cdb0, 0xffa8502c, Hair::Bun, Beard::None, Glasses::Round, 0xff6c6f7d, Scene::Studio}},
    Person{u"arjun",
           u"अर्जुन Sharma",
           u"Astronomer by night, tea drinker by day.",
           u"Can you see me? I am looking up, as usual.",
           u"Yes! I will wave.",
           3,
           {0xffb97a4e, 0xff17110e, Hair::Short, Beard::Full, Glasses::Round, 0xff4a4e8c, Scene::Mountains}},
    Person{u"leilani",
           u"Leilani Kealoha",
           u"Swims before breakfast, whatever the weather.",
           u"Can you see me? Flower in my hair.",
           u"Yes, by the water!",
           4,
           {0xffc68a5e, 0xff2a1911, Hair::Long, Beard::None, Glasses::None, 0xff1f9a94, Scene::Sea}},
    Person{u"giulia",
           u"Giulia D’Angelo",
           u"Violin maker. Laughs loudly at her own jokes.",
           u"Can you see me? I am laughing at my phone.",
           u"Yes! Come and say hello.",
           1,
           {0xffe6b48c, 0xff3a2218, Hair::Curly, Beard::None, Glasses::None, 0xff7a3f78, Scene::Cafe}},
    Person{u"bjorn",
           u"Björn Þórsson",
           u"Gardener. Talks to tomatoes; they answer in July.",
           u"Can you see me? I brought tomatoes.",
           u"Yes, the one with the basket.",
           2,
           {0xfff2c3a0, 0xff8a6a4a, Hair::Bald, Beard::Full, Glasses::None, 0xff5c7f3a, Scene::Studio}},
};

// A blank keeps these apart from any ID that a client makes up from a name.
constexpr QStringView idSuffix = u" nearby";

} // namespace

int personCount()
{
    return int(everybody.size());
}

const Person &personAt(int index)
{
    return everybody[std::size_t(index) % everybody.size()];
}

QString neighbourId(int index)
{
    const int round = index / personCount();
    const QString number = round == 0 ? QString() : QString::number(round + 1);
    return personAt(index).id.toString() + number + idSuffix.toString();
}

std::optional<int> neighbourWithId(const QString &userId, int people)
{
    for (int index = 0; index < people; ++index) {
        if (neighbourId(index) == userId)
            return index;
    }
    return std::nullopt;
}

bool isNeighbourId(const QString &userId)
{
    return userId.endsWith(idSuffix);
}

} // namespace ambrel::local

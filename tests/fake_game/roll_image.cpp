#include "roll_image.h"

#include <cstring>

namespace tally::test {

std::string roll_record(const RollPerson &person, std::size_t stride)
{
    std::string record(stride, '\0');
    std::memcpy(record.data() + roll_tag_offset - 100, &person.kingdom, sizeof person.kingdom);
    std::memcpy(record.data() + roll_tag_offset - 32, &person.honor, sizeof person.honor);
    record[roll_tag_offset] = '\n';
    record[roll_tag_offset + 1] = static_cast<char>(person.name.size());
    record.replace(roll_tag_offset + 2, person.name.size(), person.name);
    return record;
}

std::string roll_image(const std::vector<RollPerson> &people, std::size_t stride)
{
    std::string image;
    image.reserve(people.size() * stride);
    for (const RollPerson &person : people)
        image += roll_record(person, stride);
    return image;
}

std::vector<RollPerson> roll_people(std::size_t count, std::size_t player_rank)
{
    std::vector<RollPerson> people;
    for (std::size_t i = 0; i < count; ++i) {
        const char *const family = i % 3 == 0 ? "Łukasz " : i % 3 == 1 ? "Rider" : "將軍";
        people.push_back({family + std::to_string(i + 1), 1'900'000 - i * 1'234,
                          static_cast<std::int32_t>(1'000 + i % 60)});
    }
    if (player_rank == 0 || player_rank > count)
        return people;
    const std::size_t own = player_rank - 1;
    people[own].name = player_name;
    people[own >= 2 ? own - 2 : own + 1].name = first_enemy;
    people[own + 2 < count ? own + 2 : own - 1].name = second_enemy;
    return people;
}

std::vector<RollPerson> earlier(std::vector<RollPerson> people, std::uint64_t less)
{
    for (RollPerson &person : people)
        person.honor -= less;
    return people;
}

std::string torn(std::string image, std::size_t stride)
{
    // Every other record loses what tells of it, but for its name.
    for (std::size_t at = 0; at + stride <= image.size(); at += 2 * stride)
        std::memset(image.data() + at, 0x5A, roll_tag_offset);
    return image;
}

} // namespace tally::test

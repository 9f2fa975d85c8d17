#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tally::test {

/// One person of a made-up honor roll.
struct RollPerson {
    std::string name; ///< UTF-8
    std::uint64_t honor = 0;
    std::int32_t kingdom = 0;
};

inline constexpr std::size_t roll_stride = 192;
inline constexpr std::size_t roll_tag_offset = 144; ///< of the tag within a record's stride

/// The record of one person in the game's layout: `stride` bytes, the tag at `roll_tag_offset`.
std::string roll_record(const RollPerson &person, std::size_t stride = roll_stride);
std::string roll_image(const std::vector<RollPerson> &people, std::size_t stride = roll_stride);

/// `count` people in rank order, with distinct honors below 2,000,000 and all letters and kingdoms
/// of a real roll. The player stands at `player_rank` (1-based; 0: not at all), the two enemies two
/// places beside him.
std::vector<RollPerson> roll_people(std::size_t count, std::size_t player_rank);

inline constexpr char player_name[] = "Käthe of Ash";
inline constexpr char first_enemy[] = "Grim Vole";
inline constexpr char second_enemy[] = "北風の狼";

/// The roll as it stood some time ago: everybody had less honor.
std::vector<RollPerson> earlier(std::vector<RollPerson> people, std::uint64_t less);

/// Half of the records overwritten by something else.
std::string torn(std::string image, std::size_t stride = roll_stride);

} // namespace tally::test

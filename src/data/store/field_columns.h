#pragma once

#include <array>

namespace tally::data {

struct FieldColumn {
    const char *name;
    const char *type;
};

/// All columns of `field_reports` in their order in the store. They are also the keys of an
/// attack's map, except for the mail's file name and the two times, which the insert knows itself.
inline constexpr auto field_columns = std::to_array<FieldColumn>({
    {"file_name", "TEXT NOT NULL"},
    {"attack_id", "REAL NOT NULL"},
    {"attack_seq", "INTEGER"},
    {"file_mtime", "REAL"},
    {"imported_at", "REAL"},
    {"email_time", "REAL"},
    {"end_date", "REAL"},
    {"email_id", "REAL"},
    {"email_box", "TEXT"},
    {"email_type", "TEXT"},
    {"email_role", "TEXT"},
    {"email_receiver", "TEXT"},
    {"tour_id", "REAL"},
    {"n_attacks", "INTEGER"},
    {"is_kvk", "INTEGER"},
    {"is_rally", "INTEGER"},
    {"my_ct", "REAL"},
    {"enemy_ct", "REAL"},
    {"enemy_npc_type", "REAL"},
    {"enemy_npc_btype", "REAL"},
    {"player_id", "REAL"},
    {"player_name", "TEXT"},
    {"alliance_name", "TEXT"},
    {"my_hid", "REAL"},
    {"my_hid2", "REAL"},
    {"enemy_id", "REAL"},
    {"enemy_name", "TEXT"},
    {"enemy_alliance", "TEXT"},
    {"enemy_hid", "REAL"},
    {"enemy_hid2", "REAL"},
    {"my_kill_score", "INTEGER"},
    {"enemy_kill_score", "INTEGER"},
    {"my_death", "INTEGER"},
    {"enemy_death", "INTEGER"},
    {"my_power", "INTEGER"},
    {"enemy_power", "INTEGER"},
    {"my_bad_hurt", "INTEGER"},
    {"enemy_bad_hurt", "INTEGER"},
    {"my_hurt", "INTEGER"},
    {"enemy_hurt", "INTEGER"},
    {"my_hlv", "REAL"},
    {"my_hlv2", "REAL"},
    {"my_hst", "REAL"},
    {"my_hst2", "REAL"},
    {"my_haw", "INTEGER"},
    {"my_haw2", "INTEGER"},
    {"my_cosid", "REAL"},
    {"my_formation", "REAL"},
    {"my_hss", "TEXT"},
    {"my_hss2", "TEXT"},
    {"my_heq", "TEXT"},
    {"my_heq2", "TEXT"},
    {"my_hwbs", "TEXT"},
    {"my_hwbs2", "TEXT"},
    {"my_inscriptions", "TEXT"},
    {"my_inscriptions2", "TEXT"},
    {"enemy_hlv", "REAL"},
    {"enemy_hlv2", "REAL"},
    {"enemy_hst", "REAL"},
    {"enemy_hst2", "REAL"},
    {"enemy_haw", "INTEGER"},
    {"enemy_haw2", "INTEGER"},
    {"enemy_cosid", "REAL"},
    {"enemy_formation", "REAL"},
    {"enemy_hss", "TEXT"},
    {"enemy_hss2", "TEXT"},
    {"enemy_heq", "TEXT"},
    {"enemy_heq2", "TEXT"},
    {"enemy_hwbs", "TEXT"},
    {"enemy_hwbs2", "TEXT"},
    {"enemy_inscriptions", "TEXT"},
    {"enemy_inscriptions2", "TEXT"},
});

} // namespace tally::data

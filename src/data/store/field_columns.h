#pragma once

#include <array>

namespace tally::data {

struct FieldColumn {
    /// Tables of older versions lack the later ones and get them in this order.
    enum Version { first, armies, inscriptions };
    enum Place { in_lists, in_details };

    const char *name;
    const char *type;
    Version since;
    Place place;
};

/// All columns of `field_reports` in their order in the store. They are also the keys of an
/// attack's map, except for the mail's file name and the two times, which the insert knows itself.
inline constexpr auto field_columns = [] {
    using enum FieldColumn::Version;
    using enum FieldColumn::Place;
    return std::to_array<FieldColumn>({
        {"file_name", "TEXT NOT NULL", first, in_lists},
        {"attack_id", "REAL NOT NULL", first, in_lists},
        {"attack_seq", "INTEGER", first, in_lists},
        {"file_mtime", "REAL", first, in_details},
        {"imported_at", "REAL", first, in_details},
        {"email_time", "REAL", first, in_lists},
        {"end_date", "REAL", first, in_lists},
        {"email_id", "REAL", first, in_lists},
        {"email_box", "TEXT", first, in_lists},
        {"email_type", "TEXT", first, in_lists},
        {"email_role", "TEXT", first, in_lists},
        {"email_receiver", "TEXT", first, in_details},
        {"tour_id", "REAL", first, in_lists},
        {"n_attacks", "INTEGER", first, in_lists},
        {"is_kvk", "INTEGER", first, in_lists},
        {"is_rally", "INTEGER", armies, in_lists},
        {"my_ct", "REAL", armies, in_lists},
        {"enemy_ct", "REAL", armies, in_lists},
        {"enemy_npc_type", "REAL", first, in_lists},
        {"enemy_npc_btype", "REAL", first, in_lists},
        {"player_id", "REAL", first, in_lists},
        {"player_name", "TEXT", first, in_lists},
        {"alliance_name", "TEXT", first, in_lists},
        {"my_hid", "REAL", first, in_lists},
        {"my_hid2", "REAL", first, in_lists},
        {"enemy_id", "REAL", first, in_lists},
        {"enemy_name", "TEXT", first, in_lists},
        {"enemy_alliance", "TEXT", first, in_lists},
        {"enemy_hid", "REAL", first, in_lists},
        {"enemy_hid2", "REAL", first, in_lists},
        {"my_kill_score", "INTEGER", armies, in_lists},
        {"enemy_kill_score", "INTEGER", armies, in_lists},
        {"my_death", "INTEGER", armies, in_lists},
        {"enemy_death", "INTEGER", armies, in_lists},
        {"my_power", "INTEGER", armies, in_lists},
        {"enemy_power", "INTEGER", armies, in_lists},
        {"my_bad_hurt", "INTEGER", armies, in_lists},
        {"enemy_bad_hurt", "INTEGER", armies, in_lists},
        {"my_hurt", "INTEGER", armies, in_lists},
        {"enemy_hurt", "INTEGER", armies, in_lists},
        {"my_hlv", "REAL", armies, in_details},
        {"my_hlv2", "REAL", armies, in_details},
        {"my_hst", "REAL", armies, in_details},
        {"my_hst2", "REAL", armies, in_details},
        {"my_haw", "INTEGER", armies, in_details},
        {"my_haw2", "INTEGER", armies, in_details},
        {"my_cosid", "REAL", armies, in_details},
        {"my_formation", "REAL", armies, in_details},
        {"my_hss", "TEXT", armies, in_details},
        {"my_hss2", "TEXT", armies, in_details},
        {"my_heq", "TEXT", armies, in_details},
        {"my_heq2", "TEXT", armies, in_details},
        {"my_hwbs", "TEXT", armies, in_details},
        {"my_hwbs2", "TEXT", armies, in_details},
        {"my_inscriptions", "TEXT", inscriptions, in_details},
        {"my_inscriptions2", "TEXT", inscriptions, in_details},
        {"enemy_hlv", "REAL", armies, in_details},
        {"enemy_hlv2", "REAL", armies, in_details},
        {"enemy_hst", "REAL", armies, in_details},
        {"enemy_hst2", "REAL", armies, in_details},
        {"enemy_haw", "INTEGER", armies, in_details},
        {"enemy_haw2", "INTEGER", armies, in_details},
        {"enemy_cosid", "REAL", armies, in_details},
        {"enemy_formation", "REAL", armies, in_details},
        {"enemy_hss", "TEXT", armies, in_details},
        {"enemy_hss2", "TEXT", armies, in_details},
        {"enemy_heq", "TEXT", armies, in_details},
        {"enemy_heq2", "TEXT", armies, in_details},
        {"enemy_hwbs", "TEXT", armies, in_details},
        {"enemy_hwbs2", "TEXT", armies, in_details},
        {"enemy_inscriptions", "TEXT", inscriptions, in_details},
        {"enemy_inscriptions2", "TEXT", inscriptions, in_details},
    });
}();

} // namespace tally::data

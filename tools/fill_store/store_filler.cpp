#include "store_filler.h"

#include "data/store/tally_db.h"
#include "sqlite_writer.h"

#include <QFile>

#include <algorithm>
#include <deque>
#include <random>
#include <stdexcept>

namespace tally::tools {

namespace {

constexpr int rounds_per_chain = 10;
constexpr double day = 86400.0;

std::string file_name(const char *kind, int number)
{
    return std::string("Persistent.Mail.") + kind + std::to_string(100'000'000 + number);
}

/// Writes all rows of a store, oldest first, as years of imports would have.
class Filler {
public:
    Filler(SqliteWriter &writer, const FillOptions &options)
        : writer_(writer), options_(options), random_(options.seed)
    {}

    void add_chains();
    void add_field_fights();
    void add_trials();
    void add_forts();

private:
    int between(int low, int high)
    {
        return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
    }
    bool with_chance(double chance) { return between(0, 999'999) < chance * 1e6; }
    double player_id(int player) const { return 5'000'000.0 + player; }
    std::string player_name(int player) const { return "Player " + std::to_string(player + 1); }
    /// Most play of the first account.
    int player() { return std::max(0, between(-options_.players, options_.players - 1)); }
    /// The time of report `number` of `count`, spread over the days.
    double time(int number, int count)
    {
        const double span = options_.days * day;
        return options_.end - span + span * number / count + between(0, 1999) / 1000.0;
    }
    double barbarian();

    SqliteWriter &writer_;
    const FillOptions options_;
    std::mt19937 random_;
    double next_ctid_ = 1e9;
    std::deque<double> to_meet_again_;
    struct FortChain {
        std::string file;
        double start;
    };
    std::vector<FortChain> fort_chains_;
};

double Filler::barbarian()
{
    // A few chains later than the first time.
    if (to_meet_again_.size() > 30 && with_chance(0.5)) {
        const double ctid = to_meet_again_.front();
        to_meet_again_.pop_front();
        return ctid;
    }
    const double ctid = next_ctid_++;
    if (with_chance(1.0 / 3.0))
        to_meet_again_.push_back(ctid);
    return ctid;
}

void Filler::add_chains()
{
    SqliteWriter::Insert round(writer_, "reports",
                               "file_name, round_no, npc_btype, npc_type, level, result, "
                               "report_time, file_mtime, imported_at, chain_start_time, "
                               "chain_end_time, hero_id_1, hero_id_2, npc_ctid, disappear_tick, "
                               "damage_taken, damage_dealt, player_id, player_name, "
                               "alliance_name, ets, is_free_ap, is_fort_round");
    SqliteWriter::Insert loot(writer_, "loot",
                              "file_name, round_no, item_type, item_subtype, value");
    const int chains = (options_.rounds + rounds_per_chain - 1) / rounds_per_chain;
    for (int chain = 0; chain < chains; ++chain) {
        const std::string file = file_name("1", chain);
        const int who = player();
        const bool is_fort = with_chance(0.10);
        const double start = time(chain, chains);
        const double end = start + between(120, 900);
        const double hero_1 = between(1, 12) * 7.0;
        const double hero_2 = between(13, 24) * 7.0;
        const int rounds = std::min(rounds_per_chain, options_.rounds - chain * rounds_per_chain);
        if (is_fort)
            fort_chains_.push_back({file, start});
        for (int number = 0; number < rounds; ++number) {
            const bool fort_round = is_fort && number == 0;
            round(file, number, 1.0, 150'000.0 + between(1, 55), double(between(30, 55)), 1.0, end,
                  end + 2.0, end + 60.0, start, end, hero_1, hero_2, barbarian(), start * 1000.0,
                  double(between(1000, 90'000)),
                  fort_round ? 1'500'000.0 + between(0, 900'000) : double(between(50'000, 900'000)),
                  player_id(who), player_name(who), std::string("Alliance"), end - number,
                  is_fort && !fort_round ? 1 : 0, fort_round ? 1 : 0);
            if (!with_chance(0.9))
                continue;
            const int items = between(3, 6);
            for (int item = 0; item < items; ++item) {
                const int kind = between(0, 39);
                loot(file, number, double(1 + kind % 5), double(kind), double(between(1, 50)));
            }
        }
    }
}

void Filler::add_field_fights()
{
    SqliteWriter::Insert attack(
        writer_, "field_reports",
        "file_name, attack_id, attack_seq, file_mtime, imported_at, email_time, end_date, "
        "email_id, email_box, email_type, email_role, tour_id, n_attacks, is_kvk, is_rally, "
        "my_ct, enemy_ct, enemy_npc_btype, player_id, player_name, alliance_name, my_hid, my_hid2, "
        "enemy_id, enemy_name, enemy_alliance, enemy_hid, enemy_hid2, my_kill_score, "
        "enemy_kill_score, my_death, enemy_death, my_power, enemy_power, my_bad_hurt, "
        "enemy_bad_hurt, my_hurt, enemy_hurt, my_hlv, my_hss, my_heq, my_hwbs, my_inscriptions, "
        "enemy_hlv, enemy_hss, enemy_heq, enemy_hwbs, enemy_inscriptions");
    const std::string skills = R"({"1":5,"2":5,"3":5,"4":5})";
    const std::string equipment = R"({"1":1001,"2":1002,"3":1003,"4":1004,"5":1005,"6":1006})";
    const int attacks = options_.rounds / 5;
    for (int mail = 0, done = 0; done < attacks; ++mail) {
        const std::string file = file_name("2", mail);
        const int who = player();
        const int count = std::min(between(1, 6), attacks - done);
        const double sent = time(done, attacks);
        const double own_type = with_chance(0.8) ? 1.0 : between(2, 6);
        const bool is_rally = with_chance(0.1);
        for (int number = 0; number < count; ++number) {
            const int enemy = between(1, 3000);
            attack(file, double(done + number), number, sent + 5.0, sent + 60.0, sent, sent + 4.0,
                   double(mail), std::string(with_chance(0.02) ? "Archive" : "Inbox"),
                   std::string("Battle"), std::string("attacker"), double(mail), count,
                   with_chance(0.3) ? 1 : 0, is_rally ? 1 : 0, own_type, 1.0,
                   with_chance(0.1) ? std::optional(1.0) : std::nullopt, player_id(who),
                   player_name(who), std::string("Alliance"), between(1, 12) * 7.0,
                   between(13, 24) * 7.0, 8'000'000.0 + enemy, "Enemy " + std::to_string(enemy),
                   std::string("Others"), between(1, 12) * 7.0, between(13, 24) * 7.0,
                   between(0, 90'000), between(0, 90'000), between(0, 900), between(0, 900),
                   between(1, 1000), between(1, 1000), between(0, 9000), between(0, 9000),
                   between(0, 9000), between(0, 9000), 60.0, skills, equipment, skills, skills,
                   60.0, skills, equipment, skills, skills);
        }
        done += count;
    }
}

void Filler::add_trials()
{
    SqliteWriter::Insert trial(writer_, "trial_reports",
                               "file_name, mail_id, boss_name, npc_type, npc_level, tile_x, "
                               "tile_y, event_time, file_mtime");
    SqliteWriter::Insert participant(writer_, "trial_participants",
                                     "id, file_name, player_id, player_name, damage_rate, order_");
    SqliteWriter::Insert loot(writer_, "trial_loot",
                              "participant_id, item_type, item_subtype, value");
    const int kills = options_.rounds * 20 / 1000;
    int id = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const std::string file = file_name("3", kill);
        const double when = time(kill, kills);
        const bool is_keep = with_chance(0.05);
        trial(file, std::to_string(kill),
              std::string(is_keep            ? "Bloodfist Bargha"
                          : with_chance(0.5) ? "Ironhand Baulur"
                                             : "Miser Khaolak"),
              is_keep ? 102'000'155.0 : 102'000'001.0, double(between(1, 5)), between(0, 1199),
              between(0, 1199), when, when + 3.0);
        const int count = between(1, 8);
        for (int place = 1; place <= count; ++place) {
            const int who = place == 1 ? player() : options_.players + between(0, 199);
            participant(++id, file, player_id(who), player_name(who), 1.0 / count, place);
            const int items = between(2, 5);
            for (int item = 0; item < items; ++item)
                loot(id, between(1, 5), between(0, 30), between(1, 20));
        }
    }
}

void Filler::add_forts()
{
    SqliteWriter::Insert fort(writer_, "fort_reports",
                              "file_name, mail_id, fort_level, tile_x, tile_y, damage_percent, "
                              "event_time, file_mtime, battle_file_name");
    SqliteWriter::Insert loot(writer_, "fort_loot", "file_name, item_type, item_subtype, value");
    int number = 0;
    for (const auto &[chain, start] : fort_chains_) {
        const std::string file = file_name("4", number++);
        // The chain of one in a hundred has left the mail cache before it was imported.
        const bool is_linked = !with_chance(0.01);
        const double when = is_linked ? start + between(0, 290) : start - 3000.0 * day;
        fort(file, std::to_string(number), between(1, 10), between(0, 1199), between(0, 1199),
             between(1, 100), when, when + 3.0, is_linked ? std::optional(chain) : std::nullopt);
        const int items = between(3, 6);
        for (int item = 0; item < items; ++item)
            loot(file, between(1, 5), between(0, 30), between(1, 20));
    }
}

} // namespace

void fill_store(const QString &path, const FillOptions &options)
{
    if (QFile::exists(path))
        throw std::runtime_error(path.toStdString() + " exists already");
    data::TallyDb(path).init_schema();
    SqliteWriter writer(path.toUtf8());
    // Indexes are made faster than kept, and what hangs on triggers is made anew with them.
    writer.exec("PRAGMA synchronous = OFF");
    writer.exec("PRAGMA journal_mode = DELETE");
    writer.exec("BEGIN");
    for (const QByteArray table : {"reports", "loot"}) {
        for (const char *change : {"insert_new", "delete_old", "update_old", "update_new"})
            writer.exec("DROP TRIGGER stale_" + table + '_' + change);
    }
    for (const char *index :
         {"idx_reports_btype", "idx_reports_mtime", "idx_reports_heros", "idx_reports_ctid",
          "idx_reports_chain_time", "idx_loot_file", "idx_loot_item"})
        writer.exec(QByteArray("DROP INDEX ") + index);
    Filler filler(writer, options);
    filler.add_chains();
    filler.add_field_fights();
    filler.add_trials();
    filler.add_forts();
    writer.exec("COMMIT");
    data::TallyDb db(path);
    db.init_schema();
    db.complete_chain_slices();
}

} // namespace tally::tools

#include "world_plan.h"

#include <algorithm>
#include <cmath>

namespace tally::sample {
namespace {

constexpr double day = 86400.0;
constexpr double slot_length = 1000.0;
constexpr double latest_chain_start = 300.0; ///< within a slot
constexpr double longest_event = 3600.0;     ///< nothing may end behind the end of the world
constexpr double keep_pause = 68.0 * 3600.0;

constexpr double chain_share = 0.18;
constexpr double field_share = 0.15;
constexpr double trial_share = 0.10;
constexpr double keep_share = 0.05; ///< at most: the pause between two keeps decides
constexpr double fort_share = 0.05;
constexpr double near_fort_share = 0.6;

class Planner {
public:
    explicit Planner(const WorldOptions &options)
        : options_(options), random_(options.seed), begin_(options.end - options.days * day),
          slots_(static_cast<int>((options.days * day - longest_event) / slot_length))
    {
        mails_.reserve(static_cast<std::size_t>(options.count));
    }

    std::vector<PlannedMail> plan()
    {
        const int forts = share(fort_share);
        const int chains = share(chain_share);
        const int near = std::min({static_cast<int>(forts * near_fort_share), chains, slots_ / 2});
        plan_chains(near, chains - near);
        for (int i = near; i < forts; ++i)
            plan_far_fort();
        for (int i = share(field_share); i > 0; --i)
            add(any_time(), any_player(), MailKind::Field);
        plan_boss_sessions(share(trial_share));
        plan_keeps(share(keep_share));
        while (std::ssize(mails_) < options_.count)
            add(any_time(), any_player(), MailKind::Other);
        std::stable_sort(
            mails_.begin(), mails_.end(),
            [](const PlannedMail &a, const PlannedMail &b) { return a.time < b.time; });
        return std::move(mails_);
    }

private:
    int share(double part) const { return static_cast<int>(options_.count * part); }
    int any_player() { return random_.integer(0, options_.players - 1); }
    double slot_start(int slot) const { return begin_ + slot * slot_length; }

    /// The chance that somebody plays at that time, against the busiest hours.
    static double activity(double time)
    {
        const double hour = std::fmod(time, day) / 3600.0;
        if (hour < 6.0)
            return 0.15;
        return hour < 17.0 ? 0.6 : 1.0;
    }

    double any_time()
    {
        for (;;) {
            const double time = random_.real(begin_, options_.end - longest_event);
            if (random_.chance(activity(time)))
                return time;
        }
    }

    void add(double time, int player, MailKind kind, quint64 group_seed = 0)
    {
        mails_.push_back({time, random_.bits(), group_seed, player, kind});
    }

    /// All slots in a random order in which busy hours tend to come first.
    std::vector<int> shuffled_slots()
    {
        std::vector<std::pair<double, int>> keyed;
        for (int slot = 0; slot < slots_; ++slot)
            keyed.emplace_back(random_.real(0.0, 1.0) / activity(slot_start(slot)), slot);
        std::sort(keyed.begin(), keyed.end());
        std::vector<int> result;
        for (const auto &[key, slot] : keyed)
            result.push_back(slot);
        return result;
    }

    void plan_chains(int with_fort, int without_fort)
    {
        std::vector<int> slots = shuffled_slots();
        for (int i = 0; i < with_fort; ++i)
            plan_chain_with_fort(slots[static_cast<std::size_t>(i)]);
        slots.erase(slots.begin(), slots.begin() + with_fort);

        // More chains than slots have no place: other mails then fill the count.
        for (int player = 0; player < options_.players; ++player) {
            const int wanted =
                without_fort / options_.players + (player < without_fort % options_.players);
            const std::size_t size = std::min(slots.size(), static_cast<std::size_t>(wanted));
            for (std::size_t i = 0; i < size; ++i)
                add(slot_start(slots[i]) + random_.real(0.0, latest_chain_start), player,
                    random_.chance(0.05) ? MailKind::FortChain : MailKind::Chain);
            random_.shuffle(slots);
        }
    }

    void plan_chain_with_fort(int slot)
    {
        const double start = slot_start(slot) + random_.real(0.0, latest_chain_start);
        const int player = any_player();
        // Where no round is marked in the mail, linking marks one.
        add(start, player, random_.chance(0.7) ? MailKind::FortChain : MailKind::Chain);
        add(start + random_.real(5.0, 295.0), player, MailKind::Fort);
    }

    void plan_far_fort()
    {
        const double start = slot_start(random_.integer(0, slots_ - 1));
        add(start + random_.real(605.0, 695.0), any_player(), MailKind::Fort);
    }

    void plan_boss_sessions(int kills)
    {
        while (kills > 0) {
            const int player = any_player();
            const quint64 group = random_.bits();
            double time = any_time();
            for (int i = std::min(kills, random_.integer(3, 8)); i > 0; --i, --kills) {
                add(time, player, MailKind::Trial, group);
                time += random_.real(120.0, 400.0);
            }
        }
    }

    void plan_keeps(int most)
    {
        int planned = 0;
        for (int player = 0; player < options_.players; ++player) {
            double time = options_.end - random_.real(3600.0, keep_pause);
            for (; time > begin_ && planned < most; ++planned) {
                add(time, player, MailKind::Keep);
                time -= keep_pause + random_.real(0.0, 4.0 * 3600.0);
            }
        }
    }

    const WorldOptions options_;
    Random random_;
    const double begin_;
    const int slots_;
    std::vector<PlannedMail> mails_;
};

} // namespace

std::vector<PlannedMail> plan_world(const WorldOptions &options)
{
    return Planner(options).plan();
}

} // namespace tally::sample

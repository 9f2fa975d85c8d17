#include "ui/overlay/overlay_figures.h"

#include <QLocale>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>

namespace tally::ui {
namespace {

using namespace Qt::StringLiterals;
using data::LootStat;

LootStat row(const QString &name, const QString &unit, int pieces, double unit_value = 1.0,
             double subtype = 0.0)
{
    LootStat stat;
    stat.item_type = 2.0;
    stat.item_subtype = subtype;
    stat.name = name;
    stat.unit = unit;
    stat.unit_value = unit_value;
    stat.pieces = pieces;
    stat.total_value = static_cast<qint64>(pieces * unit_value);
    return stat;
}

data::ItemInfo knows_nothing(std::optional<double> /*type*/, std::optional<double> /*subtype*/)
{
    return {};
}

/// The figures by the words of the rules: one pass over the loot for each of them.
double counted_again(const std::vector<LootStat> &loot, const QString &key)
{
    const std::map<QString, QList<int>> minutes = {
        {u"universal"_s, {34}}, {u"training"_s, {71, 72}}, {u"healing"_s, {92}}};
    double sum = 0.0;
    for (const LootStat &stat : loot) {
        const QString unit = stat.unit.toLower();
        const QString name = stat.name.toUpper();
        if (unit == key && key == u"gems")
            sum += static_cast<double>(stat.total_value);
        else if (unit == key && key == u"crystals")
            sum += stat.pieces;
        else if (unit == u"min" && minutes.count(key) &&
                 minutes.at(key).contains(static_cast<int>(stat.item_subtype.value_or(0))))
            sum += static_cast<double>(stat.total_value) / 1440;
        else if (u"mat_"_s + unit == key.toLower())
            sum += stat.pieces / (name.contains(u"LEGENDARY")  ? 1.0
                                  : name.contains(u"ELITE")    ? 4.0
                                  : name.contains(u"EPIC")     ? 16.0
                                  : name.contains(u"ADVANCED") ? 64.0
                                                               : 256.0);
    }
    return sum;
}

rc::Gen<LootStat> any_row()
{
    return rc::gen::exec([] {
        const auto unit =
            *rc::gen::element(u"crystals"_s, u"Gems"_s, u"MIN"_s, u"min"_s, u"leather"_s,
                              u"Iron Ore"_s, u"animal bones"_s, u"EBONY"_s, u"food"_s, QString());
        const auto words = *rc::gen::container<std::vector<QString>>(
            rc::gen::element(u"Legendary"_s, u"elite"_s, u"Epic"_s, u"ADVANCED"_s, u"Leather"_s));
        return row(QStringList(words.begin(), words.end()).join(u' ') + u'.', unit,
                   *rc::gen::inRange(0, 1'000'000), *rc::gen::element(1.0, 5.0, 60.0),
                   *rc::gen::element(34.0, 71.0, 72.0, 92.0, 81.0));
    });
}

RC_GTEST_PROP(OverlayFigures, AreThoseOfASecondComputation, ())
{
    const auto loot = *rc::gen::container<std::vector<LootStat>>(any_row());
    const auto texts = overlay_figures(OverlayMode::Compact1, {}, loot, knows_nothing);
    for (const QString &key : {u"universal"_s, u"training"_s, u"healing"_s, u"mat_Leather"_s,
                               u"mat_Iron Ore"_s, u"mat_Animal Bones"_s, u"mat_Ebony"_s}) {
        const double shown = texts.value(key).section(u' ', 0, 0).toDouble();
        RC_ASSERT(std::abs(shown - counted_again(loot, key)) <= 0.000'51);
    }
    for (const QString &key : {u"crystals"_s, u"gems"_s})
        RC_ASSERT(QString(texts.value(key)).remove(u' ').toDouble() == counted_again(loot, key));
}

TEST(OverlayFigures, AreWrittenAsTheOverlayShowsThem)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    data::ChainSummary summary;
    summary.files = 1'234;
    summary.battles = 3'000;
    summary.engaged = 2'001;
    summary.kills = 1'999;
    summary.chains_ap_only = 30;
    summary.honor = 1'000'000;
    const std::vector<LootStat> loot = {
        row(u"Leather"_s, u"leather"_s, 2'560), row(u"Advanced Leather"_s, u"Leather"_s, 1'280),
        row(u"Elite legendary hide"_s, u"leather"_s, 3), row(u"Timer"_s, u"min"_s, 24, 60.0, 71.0)};
    auto full = overlay_figures(OverlayMode::Full, summary, loot, knows_nothing);
    for (const auto &[key, text] : {std::pair(u"chains"_s, u"1 234"_s),
                                    {u"rounds"_s, u"3 000"_s},
                                    {u"wins"_s, u"2 001 (66.7%)"_s},
                                    {u"avg"_s, u"66.63"_s},
                                    {u"kills"_s, u"1 999"_s},
                                    {u"honor"_s, u"1 000 000"_s},
                                    {u"training"_s, u"1.000 d"_s},
                                    {u"mat_Leather"_s, u"N:2 560 | A:1 280 (L: 33.000)"_s}})
        EXPECT_EQ(full.value(key).toStdString(), text.toStdString());
    full = overlay_figures(OverlayMode::Full, {}, {}, knows_nothing);
    EXPECT_EQ(full.value(u"wins"_s), u"0 (0.0%)"_s);
    EXPECT_EQ(full.value(u"avg"_s), u"0.00"_s);
    EXPECT_EQ(full.value(u"mat_Ebony"_s), u"N:0 | A:0 (L: 0.000)"_s);
    QLocale::setDefault(before);
}

TEST(OverlayFigures, ANameThatArrivesLateBringsUnitAndValue)
{
    LootStat nameless = row({}, {}, 3);
    nameless.item_subtype = 34.0;
    const auto look_up = [](std::optional<double>, std::optional<double> subtype) {
        return subtype == 34.0 ? data::ItemInfo{u"Hour"_s, 480.0, u"min"_s, {}} : data::ItemInfo{};
    };
    EXPECT_EQ(overlay_figures(OverlayMode::Full, {}, {nameless}, look_up).value(u"universal"_s),
              u"1.000 d"_s);
}

TEST(OverlayFigures, TheFilterNamesItsLastMinute)
{
    constexpr double noon = 1'740'830'400.0; // 2025-03-01 12:00 UTC
    const auto text = [](std::optional<double> from, std::optional<double> to, const QString &tab) {
        return overlay_filter_text({1.0, from, to, {}}, tab).toStdString();
    };
    EXPECT_EQ(text({}, {}, {}), "Filter: all time");
    EXPECT_EQ(text({}, noon, {}), "Filter:  → 2025-03-01 11:59");
    EXPECT_EQ(text(noon, noon + 3'600, u"Forts"_s),
              "Filter: 2025-03-01 12:00 → 2025-03-01 12:59  ·  Forts");
}

} // namespace
} // namespace tally::ui

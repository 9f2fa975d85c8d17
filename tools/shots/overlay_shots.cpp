#include "overlay_shots.h"

#include "album.h"
#include "busy_picture.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "sample_store.h"
#include "settings/settings.h"
#include "ui/overlay/overlay_source.h"
#include "ui/overlay/overlay_window.h"

#include <QCoreApplication>

#include <array>

namespace tally::tools {
namespace {

class WholeDay final : public ui::OverlaySource {
public:
    std::optional<ui::ChainFilter> current_chain_filter() const override
    {
        return ui::ChainFilter{1.0, SampleStore::end - 86'400, SampleStore::end, {}};
    }
    QString current_tab_title() const override { return QStringLiteral("⚔️ Chain Tracker"); }
};

} // namespace

void take_overlays(const Album &album, SampleStore &store)
{
    queries::StoreQueries queries(store.db(), std::chrono::seconds(5));
    Settings settings(store.db());
    platform::FakeHost host;
    const WholeDay source;
    ui::OverlayWindow overlay({.db = store.db(),
                               .queries = queries,
                               .settings = settings,
                               .host = host,
                               .icon_dir = store.icon_dir()},
                              &source, 1.0);
    overlay.show();
    constexpr std::array modes = {"full", "compact1", "compact2"};
    for (int mode = 0; mode < static_cast<int>(modes.size()); ++mode) {
        overlay.set_mode(mode);
        for (const int size : {8, 10, 26}) {
            overlay.set_font_size(size);
            QCoreApplication::processEvents();
            album.add(QStringLiteral("overlay-%1-%2")
                          .arg(QLatin1StringView(modes.at(static_cast<std::size_t>(mode))))
                          .arg(size),
                      over_busy(overlay));
        }
    }
    overlay.set_mode(0);
    overlay.set_font_size(10);
}

} // namespace tally::tools

#pragma once

#include "ui/overlay/overlay_look.h"
#include "ui/overlay/overlay_mode.h"

#include <QHash>
#include <QString>
#include <QWidget>

#include <vector>

class QBoxLayout;
class QLabel;

namespace tally::ui {

/// What the statistics overlay shows in one mode and one size of type.
class OverlayContent : public QWidget {
public:
    OverlayContent(OverlayMode mode, const OverlayLook &look, QString icon_dir);

    /// Texts by the keys of `overlay_figures`; those that the mode does not show are left out.
    void show_values(const QHash<QString, QString> &texts);
    void show_filter(const QString &text);

    enum class Icons { Missing, All };
    /// Looks for the icons of the tiles, which may arrive at any time.
    void look_for_icons(Icons which);

private:
    struct Tile {
        QString icon;
        QBoxLayout *line;
        QLabel *picture = nullptr; ///< while there is one
        QString path = {};         ///< of the file that was tried last
    };

    void build_full();
    void build_compact(OverlayMode mode);
    QBoxLayout *add_line(int spacing);
    void add_row(const QString &key, const QString &label, const QString &colour = {});
    void add_section(const QString &title);
    void add_icon_tile(QBoxLayout &line, const QString &key, const QString &icon);
    void add_text_tile(QBoxLayout &line, const QString &key, const QString &label);
    QLabel *new_value(const QString &key, const QString &text);
    void look_for_icon(Tile &tile);

    const OverlayLook look_;
    const QString icon_dir_;
    QBoxLayout *lines_;
    QHash<QString, QLabel *> value_labels_;
    QLabel *filter_label_ = nullptr; ///< only in the full mode
    std::vector<Tile> tiles_;
};

} // namespace tally::ui

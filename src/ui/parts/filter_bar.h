#pragma once

#include "ui/parts/player_entries.h"

#include <QGroupBox>

#include <initializer_list>
#include <optional>
#include <vector>

class QComboBox;
class QHBoxLayout;
class QPushButton;

namespace tally::ui {

class MomentRow;

/// The row in which a page's period and player are chosen. A window too narrow for it gets a second
/// one. What stands in it says the class derived from it.
class FilterBar : public QGroupBox {
    Q_OBJECT

public:
    /// Does not count as a change by the user.
    void set_players(const std::vector<PlayerEntry> &entries, std::size_t chosen);
    QString player_text() const;
    std::optional<double> player() const;

Q_SIGNALS:
    void choiceChanged(); ///< in a list
    void dayStepped(bool which_from, int delta_days);
    void refreshAsked();
    void clearAsked();

protected:
    /// \param spacing between controls that belong together, and \param gap besides between others
    FilterBar(int spacing, int gap, QWidget *parent);

    QHBoxLayout *add_group(std::initializer_list<QWidget *> controls);
    void add_moment(MomentRow *moment, bool is_from);
    QComboBox *add_choice(const QString &label, int width);
    void add_players();
    /// \param room to what follows, besides the gap
    void add_buttons(int room = 0);

    void choose_all_players();
    /// Marks "Refresh" while another period is entered than that of the figures on the page.
    void set_pending(bool is_pending);

private:
    int spacing_;
    QComboBox *player_combo_ = nullptr;
    QPushButton *refresh_ = nullptr;
    std::vector<PlayerEntry> players_; ///< the entries of the combo
};

} // namespace tally::ui

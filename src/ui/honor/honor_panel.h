#pragma once

#include "ui/honor/honor_look.h"
#include "ui/honor/honor_texts.h"

#include <QList>
#include <QSize>
#include <QWidget>

#include <array>

class QBoxLayout;
class QFrame;
class QLabel;

namespace tally::honor {

class ElidedLabel;

/// What stands in the honor overlay: the figures, who is just ahead, two buttons and a line that
/// says what goes on. It shows what it is given.
class HonorPanel : public QWidget {
    Q_OBJECT

public:
    explicit HonorPanel(HonorLook look, QWidget *parent = nullptr);

    /// \param now seconds since the Unix epoch
    void show_figures(const HonorSnapshot &figures, double now);
    void show_overtake(const std::array<OvertakeTexts, 3> &rows);
    void show_status(const QString &text);
    void show_admin_required();
    void show_game_not_found();
    /// Figure and name get their usual colours back.
    void clear_warning();

    int font_size() const { return look_.font_size(); }
    void set_font_size(int size);

    /// The room that all of it takes: 280 pixels wide, or more where the type is too large for
    /// that.
    QSize fitting_size();

Q_SIGNALS:
    void syncWanted();
    void historyWanted();
    void closeWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    struct OvertakeRowLabels {
        QLabel *rank;
        ElidedLabel *name;
        QLabel *gap;
    };

    QWidget *build_title_bar();
    QWidget *build_body();
    QLabel *add_value_row(QBoxLayout &rows, const QString &caption);
    OvertakeRowLabels add_overtake_row(QBoxLayout &body);
    QFrame *line() const;
    void warn(const QString &figure, const QString &name, const QString &style);
    void show_text(QLabel *label, const QString &text);
    void show_styled(QLabel *label, const StyledText &text);
    void fit_columns();

    HonorLook look_;
    QFrame *title_bar_ = nullptr;
    QWidget *body_ = nullptr;
    QLabel *big_label_ = nullptr;
    ElidedLabel *name_label_ = nullptr;
    QLabel *baseline_value_ = nullptr;
    QLabel *delta_value_ = nullptr;
    QLabel *read_value_ = nullptr;
    QLabel *rank_value_ = nullptr;
    QLabel *status_label_ = nullptr;
    QList<QLabel *> captions_;
    std::array<OvertakeRowLabels, 3> overtake_rows_{};
    QSize fitting_size_; ///< empty after what may change it
};

} // namespace tally::honor

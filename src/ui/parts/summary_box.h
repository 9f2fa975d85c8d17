#pragma once

#include "ui/parts/card_title.h"

#include <QGroupBox>
#include <QString>
#include <QTimer>

#include <chrono>
#include <span>
#include <vector>

class QVBoxLayout;

namespace tally::queries {
class Asker;
}

namespace tally::ui {

class SummaryCard;

/// The row of cards above a page's reports.
class SummaryBox : public QGroupBox {
    Q_OBJECT

public:
    SummaryBox(std::span<const CardTitle> cards, QWidget *parent);

    /// \param texts of the cards in their order
    void set_cards(std::span<const QString> texts);
    /// A quiet sign that figures are on their way, as soon as one asks for them longer than this.
    void show_counting_of(const queries::Asker &figures, std::chrono::milliseconds after);

protected:
    QVBoxLayout *rows() const { return rows_; }

private:
    void set_counting(bool counting);

    QVBoxLayout *rows_;
    std::vector<SummaryCard *> cards_;
    QTimer counting_sign_;
};

} // namespace tally::ui

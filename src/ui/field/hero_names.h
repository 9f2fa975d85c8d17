#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

namespace tally::ui {

/// The names of the heroes of one list, each looked up once.
class HeroNames {
public:
    /// Empty without a hero.
    QString of(const QVariant &id);
    /// Whether the reference data still give the same names.
    bool still_hold() const;

private:
    QHash<double, QString> names_;
};

} // namespace tally::ui

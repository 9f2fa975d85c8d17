#pragma once

#include "settings/settings.h"

#include <QHash>

namespace tally::test {

/// The texts of a settings table, without a store, and settings over them.
struct KeptSettings {
    QHash<QString, QString> texts;
    int writes = 0;
    Settings settings{SettingTexts{[this](const QString &key) {
                                       return texts.contains(key) ? std::optional(texts.value(key))
                                                                  : std::nullopt;
                                   },
                                   [this](const QString &key, const QString &text) {
                                       texts[key] = text;
                                       ++writes;
                                   }}};
};

} // namespace tally::test

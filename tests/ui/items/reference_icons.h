#pragma once

#include "data/master/master_cache.h"
#include "support/print_qt.h"
#include "ui/items/item_pictures.h"

#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tally::ui {

/// Reference tables and an icon folder that a test fills; gone with it. An icon's hash is its key.
class ReferenceIcons {
public:
    ReferenceIcons() { forget(); }
    ~ReferenceIcons() { forget(); }
    Q_DISABLE_COPY_MOVE(ReferenceIcons)

    QString folder() const { return folder_.path(); }
    QString file(const QString &key) const
    {
        return folder_.filePath(key + QStringLiteral(".webp"));
    }

    void index(const QString &section, const QString &key)
    {
        QVariantMap entries = sections_.value(section).toMap();
        entries.insert(key, QVariantMap{{QStringLiteral("hash"), key}});
        sections_.insert(section, entries);
        data::MasterCache::instance().set_kind(QStringLiteral("icons_index"), sections_);
    }
    void write(const QString &key, const QColor &colour)
    {
        QImage icon(64, 64, QImage::Format_ARGB32);
        icon.fill(colour);
        ASSERT_TRUE(icon.save(file(key), "PNG"));
    }
    void write_broken(const QString &key)
    {
        QFile broken(file(key));
        ASSERT_TRUE(broken.open(QIODevice::WriteOnly) && broken.write("RIFF") == 4);
    }
    void add(const QString &section, const QString &key, const QColor &colour)
    {
        index(section, key);
        write(key, colour);
    }

private:
    static void forget()
    {
        data::MasterCache::instance().clear();
        forget_item_pictures();
    }

    QTemporaryDir folder_;
    QVariantMap sections_;
};

inline QColor colour_at(const QPixmap &picture, int x, int y)
{
    return picture.toImage().pixelColor(x, y);
}

/// What the pixels that `counts` accepts lie within.
template <typename Counts>
QRect box_of(const QPixmap &picture, Counts counts)
{
    const QImage image = picture.toImage();
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (counts(image.pixelColor(x, y)))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

inline QRect painted_box(const QPixmap &picture)
{
    return box_of(picture, [](const QColor &colour) { return colour.alpha() > 0; });
}

} // namespace tally::ui

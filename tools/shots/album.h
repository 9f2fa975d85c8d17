#pragma once

#include <QDir>
#include <QPixmap>
#include <QString>

#include <cstdio>
#include <utility>

namespace tally::tools {

/// One folder of pictures, their names ending in theme and screen.
class Album {
public:
    Album(QString dir, QString suffix) : dir_(std::move(dir)), suffix_(std::move(suffix))
    {
        QDir().mkpath(dir_);
    }

    void add(const QString &name, const QPixmap &picture) const
    {
        const QString path = QDir(dir_).filePath(name + suffix_ + QStringLiteral(".png"));
        std::printf("%s\n", picture.save(path) ? qPrintable(path) : "cannot write a picture");
    }

private:
    QString dir_;
    QString suffix_;
};

} // namespace tally::tools

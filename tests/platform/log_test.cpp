#include "platform/log/error_stream.h"
#include "platform/log/process_log.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tally::platform {
namespace {

using testing::ElementsAre;

Q_LOGGING_CATEGORY(test_log, "tally.test")

TEST(FailureText, KeepsWhatTheProgramThrewWhateverTheCodePage)
{
    const QString text = QStringLiteral("cannot open C:/Jörg/王/tally.db");
    EXPECT_EQ(text_of(std::runtime_error(text.toStdString())), text);
    EXPECT_TRUE(text_of(std::runtime_error("J\xf6rg")).startsWith(u'J')); // not UTF-8
}

class Log : public testing::Test {
protected:
    ~Log() override { EXPECT_EQ(std::fclose(echo_), 0); }

    std::unique_ptr<ProcessLog> start(qint64 rotate_at = 1 << 20)
    {
        return std::make_unique<ProcessLog>(
            ProcessLogOptions{file_name(QStringLiteral("tallyhand.log")), QStringLiteral("run"),
                              rotate_at, 3, echo_});
    }
    QString file_name(const QString &name) const
    {
        return QDir(dir_.path()).filePath(QStringLiteral("logs/") + name);
    }
    QString content(const QString &name = QStringLiteral("tallyhand.log")) const
    {
        QFile file(file_name(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    /// The file's lines without their times.
    QStringList entries(const QString &name = QStringLiteral("tallyhand.log")) const
    {
        static const QRegularExpression time(QStringLiteral(
            "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}(?:[+-]\\d\\d:\\d\\d|Z) "));
        QStringList lines = content(name).split(u'\n', Qt::SkipEmptyParts);
        for (QString &line : lines)
            line.remove(time);
        return lines;
    }
    QStringList files() const
    {
        return QDir(QDir(dir_.path()).filePath(QStringLiteral("logs"))).entryList(QDir::Files);
    }
    QByteArray echoed() const
    {
        EXPECT_EQ(std::fflush(echo_), 0);
        std::rewind(echo_);
        QByteArray text(1 << 16, '\0');
        text.truncate(static_cast<qsizetype>(
            std::fread(text.data(), 1, static_cast<size_t>(text.size()), echo_)));
        return text;
    }

    QTemporaryDir dir_;
    std::FILE *echo_ = std::tmpfile();
};

TEST_F(Log, KeepsTimeLevelAndCategory)
{
    const auto log = start();
    qCWarning(test_log) << "kind" << 7;
    qInfo() << "plain";
    ProcessLog::line(QStringLiteral("[main] quitting — now"));
    EXPECT_THAT(entries(), ElementsAre(QStringLiteral("info process: run"),
                                       QStringLiteral("warning tally.test: kind 7"),
                                       QStringLiteral("info default: plain"),
                                       QStringLiteral("info process: [main] quitting — now")));
    EXPECT_EQ(echoed(),
              QStringLiteral("tally.test: kind 7\nplain\n[main] quitting — now\n").toLocal8Bit());
}

TEST_F(Log, NoTextCanFakeAnEntry)
{
    const auto log = start();
    qCInfo(test_log).noquote() << QStringLiteral("player a\n2026-01-01 warning b");
    EXPECT_TRUE(content().contains(u"player a\n    2026-01-01 warning b\n"));
}

TEST_F(Log, KeepsThreeFilesWithinTheirSizeAndTheNewestLines)
{
    constexpr qint64 rotate_at = 2000;
    const auto log = start(rotate_at);
    for (int i = 0; i < 500; ++i)
        qCInfo(test_log) << i;

    EXPECT_THAT(files(),
                ElementsAre(QStringLiteral("tallyhand.1.log"), QStringLiteral("tallyhand.2.log"),
                            QStringLiteral("tallyhand.log")));
    QStringList kept;
    for (const char *name : {"tallyhand.2.log", "tallyhand.1.log", "tallyhand.log"}) {
        EXPECT_LE(QFile(file_name(QLatin1StringView(name))).size(), rotate_at);
        QStringList lines = entries(QLatin1StringView(name));
        ASSERT_GT(lines.size(), 1);
        EXPECT_EQ(lines.takeFirst(), QStringLiteral("info process: run"));
        kept += lines;
    }
    for (qsizetype i = 0; i < kept.size(); ++i)
        EXPECT_EQ(kept[i], QStringLiteral("info tally.test: %1").arg(500 - kept.size() + i));
}

TEST_F(Log, ThreadsNeitherLoseNorMixLines)
{
    constexpr int threads = 4;
    constexpr int lines_each = 200;
    const auto log = start();
    std::vector<std::thread> running;
    running.reserve(threads);
    for (int thread = 0; thread < threads; ++thread)
        running.emplace_back([thread] {
            for (int i = 0; i < lines_each; ++i)
                qCInfo(test_log) << thread << i;
        });
    for (std::thread &thread : running)
        thread.join();

    QStringList expected = {QStringLiteral("info process: run")};
    for (int thread = 0; thread < threads; ++thread)
        for (int i = 0; i < lines_each; ++i)
            expected.append(QStringLiteral("info tally.test: %1 %2").arg(thread).arg(i));
    QStringList lines = entries();
    std::sort(lines.begin(), lines.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(lines, expected);
}

TEST_F(Log, AFileThatCannotBeWrittenCostsOnlyTheFile)
{
    QFile in_the_way(QDir(dir_.path()).filePath(QStringLiteral("logs")));
    ASSERT_TRUE(in_the_way.open(QIODevice::WriteOnly));
    const auto log = start();
    qInfo() << "still said";
    EXPECT_EQ(echoed(), QByteArray("still said\n"));

    in_the_way.remove();
    qInfo() << "said again";
    EXPECT_THAT(entries(), ElementsAre(QStringLiteral("info process: run"),
                                       QStringLiteral("info default: said again")));
}

} // namespace
} // namespace tally::platform

#include "platform/updater/zip_directory.h"
#include "support/print_qt.h"
#include "support/zip_builder.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using test::build_zip;
using test::ZipEntry;
using testing::HasSubstr;

const ZipEntry program{"ledgerline-tallyhand", "ELF"};

class Zip : public testing::Test {
protected:
    /// Why it is refused; "" if it is not.
    std::string fault(const QByteArray &zip)
    {
        QFile file(path_);
        if (!file.open(QIODevice::WriteOnly) || file.write(zip) != zip.size())
            ADD_FAILURE() << "cannot write";
        file.close();
        return zip_fault(path_, u"ledgerline-tallyhand"_s).value_or(QString()).toStdString();
    }
    std::string fault_of(const ZipEntry &entry) { return fault(build_zip({program, entry})); }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(u"x.zip"_s);
};

TEST_F(Zip, OneThatTheToolsMakeIsTaken)
{
    QFile executable(folder_.filePath(u"ledgerline-tallyhand"_s));
    ASSERT_TRUE(executable.open(QIODevice::WriteOnly));
    executable.write("ELF");
    executable.close();
    ASSERT_TRUE(QDir(folder_.path()).mkpath(u"plugins/platforms"_s));
    ASSERT_TRUE(QFile::copy(executable.fileName(), folder_.filePath(u"plugins/platforms/a.so"_s)));
    QProcess zip;
    zip.setWorkingDirectory(folder_.path());
    zip.start(u"zip"_s, {u"-qr"_s, path_, u"."_s});
    if (!zip.waitForFinished())
        GTEST_SKIP() << "zip is needed";
    EXPECT_EQ(zip_fault(path_, u"ledgerline-tallyhand"_s), std::nullopt);
    EXPECT_NE(zip_fault(path_, u"tallyhand"_s), std::nullopt) << "not in its root";
    EXPECT_NE(zip_fault(path_, u"a.so"_s), std::nullopt);
    EXPECT_NE(zip_fault(folder_.filePath(u"none"_s), u"a"_s), std::nullopt);
}

TEST_F(Zip, NamesThatLeadElsewhereAreRefusedOnEverySystem)
{
    for (const char *name :
         {"../x",          "a/../../x", "a/..",    "..",      "/etc/x",     "\\x",
          "a\\..\\x",      "C:x",       "C:\\x",   "a:b",     "a//b",       "./x",
          "a./b",          "a /b",      "CON",     "nul.txt", "a/com1.log", "LPT9",
          "aux .x",        "conin$",    "a\nb",    "a\x7f",   "\xc3\xbc",   "a*",
          "data/tally.db", "DATA/x",    "data\\x", "Data"})
        EXPECT_THAT(fault_of({name}), HasSubstr("the name ")) << name;
    EXPECT_NE(fault_of({QByteArray("a\0b", 3)}), "");
    EXPECT_NE(fault_of({""}), "");
    for (const char *name : {"a", "a/b.c", "plugins/", "..a", "a..b", "console", "com", "com10",
                             "database", "sub/data/x", "a&b ^c"})
        EXPECT_EQ(fault_of({name}), "") << name;
}

TEST_F(Zip, EntriesThatAreMoreThanPlainFilesAreRefused)
{
    for (const quint32 mode : {0120777U, 0060600U, 0010600U})
        EXPECT_THAT(fault_of({.name = "a", .attributes = mode << 16}), HasSubstr("link"));
    EXPECT_NE(fault_of({.name = "a", .attributes = 0x400}), "") << "a link of Windows";
    EXPECT_EQ(fault_of({.name = "a", .attributes = 0100755U << 16}), "");
    EXPECT_EQ(fault_of({.name = "a/", .attributes = (0040755U << 16) | 0x10}), "");
    for (const int flag : {1, 0x40, 0x2000})
        EXPECT_NE(fault_of({.name = "a", .flags = flag}), "") << "is encrypted";
    EXPECT_EQ(fault_of({.name = "a", .flags = 0x808}), "");
    EXPECT_NE(fault_of({.name = "a", .method = 12}), "");
    EXPECT_NE(fault_of({.name = "a",
                        .extra = test::little(2, 0x5455) + test::little(2, 1) + 'x' +
                                 test::little(2, 0x7075) + test::little(2, 0)}),
              "")
        << "another unpacker would take its second name";
}

TEST_F(Zip, TooManyAndTooLargeAreRefused)
{
    constexpr qint64 gigabyte = 1LL << 30;
    const auto with = [](qint64 size) {
        return build_zip(
            {program, {.name = "a", .told_size = gigabyte}, {.name = "b", .told_size = size}});
    };
    EXPECT_EQ(fault(with(gigabyte - 3)), "");
    EXPECT_THAT(fault(with(gigabyte - 2)), HasSubstr("2 GiB"));
    QList<ZipEntry> many(19'999, ZipEntry{.name = "a"});
    many.prepend(program);
    EXPECT_EQ(fault(build_zip(many)), "");
    many.append(program);
    EXPECT_THAT(fault(build_zip(many)), HasSubstr("20,000"));
}

TEST_F(Zip, OneThatCanBeReadInTwoWaysOrInNoneIsRefused)
{
    const QByteArray good = build_zip({program, {"a"}});
    EXPECT_EQ(fault(good), "");
    EXPECT_NE(fault("prepended" + good), "");
    EXPECT_NE(fault(good + "appended"), "");
    EXPECT_NE(fault(good + test::zip_end(0, 0, good.size())), "") << "another, empty directory";
    EXPECT_NE(fault(build_zip({})), "");
    // Cut or with a byte changed, it may be taken or not, but must do no harm to the reader.
    for (qsizetype i = 0; i < good.size(); ++i) {
        EXPECT_NE(fault(good.first(i)), "");
        for (const char byte : {'\0', '\x7f', '\xff'}) {
            QByteArray bent = good;
            bent[i] = byte;
            fault(bent);
        }
    }
}

} // namespace
} // namespace tally::platform::Updater

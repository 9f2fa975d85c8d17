#include "platform/updater/zip_directory.h"
#include "support/print_qt.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;

/// What the directory of a zip says of a file.
struct Entry {
    QByteArray name;
    quint32 attributes = 0; ///< the upper half those of Unix
    int flags = 0;
    int method = 0;
    QByteArray extra = {};
    quint32 size = 0;
};

QByteArray little(int bytes, qint64 value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), bytes);
}

QByteArray zip_of(const QList<Entry> &entries)
{
    QByteArray directory;
    for (const Entry &entry : entries)
        directory += "PK\1\2" + little(4, 0) + little(2, entry.flags) + little(2, entry.method) +
                     QByteArray(12, '\0') + little(4, entry.size) + little(2, entry.name.size()) +
                     little(2, entry.extra.size()) + QByteArray(6, '\0') +
                     little(4, entry.attributes) + little(4, 0) + entry.name + entry.extra;
    const QByteArray count = little(2, entries.size());
    return "files" + directory + "PK\5\6" + little(4, 0) + count + count +
           little(4, directory.size()) + little(4, 5) + little(2, 0);
}

const Entry program{"ledgerline-tallyhand"};

/// Why a zip is refused; "" if it is not.
std::string fault(const QByteArray &zip)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"x.zip"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(zip) == zip.size());
    file.close();
    return zip_fault(file.fileName(), u"ledgerline-tallyhand"_s).value_or(QString()).toStdString();
}

std::string fault_of(const Entry &entry)
{
    return fault(zip_of({program, entry}));
}

TEST(Zip, NamesThatLeadElsewhereAreRefusedOnEverySystem)
{
    for (const char *name :
         {"../x",       "a/../../x", "a/..",          "/etc/x",  "\\x",  "a\\..\\x", "C:x",
          "a:b",        "a//b",      "./x",           "a./b",    "a /b", "CON",      "nul.txt",
          "a/com1.log", "LPT9",      "aux .x",        "conin$",  "a\nb", "",         "a\x7f",
          "\xc3\xbc",   "a*",        "data/tally.db", "DATA\\x", "Data"})
        EXPECT_THAT(fault_of({name}), HasSubstr("the name ")) << name;
    EXPECT_NE(fault_of({QByteArray("a\0b", 3)}), "");
    for (const char *name :
         {"a", "a/b.c", "plugins/", "..a", "console", "com10", "database", "sub/data/x", "a&b ^c"})
        EXPECT_EQ(fault_of({name}), "") << name;
}

TEST(Zip, EntriesThatAreMoreThanPlainFilesAreRefused)
{
    for (const quint32 attributes : {0120777U << 16, 0060600U << 16, 0x400U})
        EXPECT_THAT(fault_of({"a", attributes}), HasSubstr("link"));
    for (const quint32 attributes : {0100755U << 16, 0040755U << 16 | 0x10U})
        EXPECT_EQ(fault_of({"a", attributes}), "");
    for (const auto &[flag, method] : {std::pair(1, 8), {0x40, 8}, {0x2000, 8}, {0, 12}})
        EXPECT_NE(fault_of({"a", 0, flag, method}), "") << "encrypted, or packed in a strange way";
    EXPECT_EQ(fault_of({"a", 0, 0x808, 8}), "");
    EXPECT_NE(fault_of({"a", 0, 0, 0, little(4, 0x5455) + little(4, 0x7075)}), "")
        << "a second name";
}

TEST(Zip, TooManyTooLargeAndThoseWithoutTheProgramAreRefused)
{
    const Entry large{.name = "a", .size = 1U << 30};
    const Entry other{.name = "b", .size = 1U << 30};
    EXPECT_EQ(fault(zip_of({program, large, other})), "");
    EXPECT_THAT(fault(zip_of({program, large, other, {.name = "c", .size = 1}})),
                HasSubstr("2 GiB"));
    QList<Entry> many = {program};
    while (many.size() < 20'000)
        many.append({QByteArray::number(many.size())});
    EXPECT_EQ(fault(zip_of(many)), "");
    many.append({"one more"});
    EXPECT_THAT(fault(zip_of(many)), HasSubstr("20,000"));
    EXPECT_THAT(fault(zip_of({{"system/ledgerline-tallyhand"}})), HasSubstr("in its root"));
}

TEST(Zip, OneThatCanBeReadInTwoWaysOrInNoneIsRefused)
{
    const QByteArray good = zip_of({program, {"a"}});
    EXPECT_EQ(fault(good), "");
    EXPECT_NE(fault("prepended" + good), "");
    EXPECT_NE(fault(good + "appended"), "");
    EXPECT_NE(fault(good + good.last(22)), "") << "another directory";
    EXPECT_NE(fault(zip_of({program, {.name = "a", .extra = "PK\6\7" + QByteArray(16, '\0')}})), "")
        << "the way to another directory";
    for (const char *name : {"LIB\\a", "lib/A", "lib/a/"})
        EXPECT_THAT(fault(zip_of({program, {"lib/a"}, {name}})), HasSubstr("the same name"));
    // With a byte changed it may be taken or not, but must do no harm to the reader.
    for (qsizetype i = 0; i < good.size(); ++i) {
        EXPECT_NE(fault(good.first(i)), "");
        QByteArray bent = good;
        bent[i] = '\xff';
        fault(bent);
    }
}

} // namespace
} // namespace tally::platform::Updater

#include "ui/parts/table_export.h"

#include "platform/files/exact_files.h"
#include "support/file_size_limit.h"
#include "support/print_qt.h"
#include "ui/parts/export_field.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QStatusBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <limits>

namespace tally::ui {
namespace {

using namespace Qt::Literals::StringLiterals;

struct FieldCase {
    QVariant value;
    const char16_t *csv;
    const char16_t *tab;
};

class ExportField : public testing::TestWithParam<FieldCase> {};

TEST_P(ExportField, IsQuotedAndDefusedWhereItHasToBe)
{
    EXPECT_EQ(csv_field(GetParam().value), QStringView(GetParam().csv));
    EXPECT_EQ(tab_field(GetParam().value), QStringView(GetParam().tab));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ExportField,
    testing::Values(FieldCase{u"a,b"_s, u"\"a,b\"", u"a,b"},
                    FieldCase{u"say \"hi\""_s, u"\"say \"\"hi\"\"\"", u"say \"hi\""},
                    FieldCase{u"\"hi\""_s, u"\"\"\"hi\"\"\"", u"\"\"\"hi\"\"\""},
                    FieldCase{u"a\r\nb\tc"_s, u"\"a\r\nb\tc\"", u"a  b c"},
                    FieldCase{u"=1+1"_s, u"'=1+1", u"'=1+1"},
                    FieldCase{u"=A(\"x\",1)"_s, u"\"'=A(\"\"x\"\",1)\"", u"'=A(\"x\",1)"},
                    FieldCase{u"+cmd|' /C'!A0"_s, u"'+cmd|' /C'!A0", u"'+cmd|' /C'!A0"},
                    FieldCase{u"-x-"_s, u"'-x-", u"'-x-"}, FieldCase{u"-inf"_s, u"'-inf", u"'-inf"},
                    FieldCase{u"@SUM(A1)"_s, u"'@SUM(A1)", u"'@SUM(A1)"},
                    FieldCase{u"\t=1"_s, u"'\t=1", u"' =1"},
                    FieldCase{u"\r=1"_s, u"\"'\r=1\"", u"' =1"},
                    FieldCase{u"a=1"_s, u"a=1", u"a=1"}, FieldCase{u"—"_s, u"—", u"—"}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, ExportField,
    testing::Values(FieldCase{-5, u"-5", u"-5"}, FieldCase{u"-5.25"_s, u"-5.25", u"-5.25"},
                    FieldCase{1'000'000.0, u"1000000", u"1000000"},
                    FieldCase{-0.1, u"-0.1", u"-0.1"}, FieldCase{1e300, u"1e+300", u"1e+300"},
                    FieldCase{std::numeric_limits<double>::quiet_NaN(), u"", u""},
                    FieldCase{QVariant(), u"", u""}));

/// Names, a hidden column and numbers that are shown otherwise than exported.
class ExportedTable : public testing::Test {
protected:
    ExportedTable()
    {
        table_.setHorizontalHeaderLabels({u"Name"_s, u"Id"_s, u"Qty"_s});
        for (int row = 0; row < 3; ++row) {
            table_.setItem(row, 0, new QTableWidgetItem(u"n%1"_s.arg(row)));
            table_.setItem(row, 2, new QTableWidgetItem(u"%1 000"_s.arg(row)));
            table_.item(row, 2)->setData(export_role, row * 1000);
        }
        table_.setSelectionBehavior(QAbstractItemView::SelectRows);
        table_.setColumnHidden(1, true);
        offer_copy_and_export(&table_, u"loot"_s);
        QGuiApplication::clipboard()->setText(u"before"_s);
        table_.show();
    }

    /// As the context menu key does.
    QMenu *open_menu()
    {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, table_.mapToGlobal(QPoint()));
        QCoreApplication::sendEvent(&table_, &event);
        return table_.findChild<QMenu *>();
    }
    void save_as(const QString &path)
    {
        QMenu *menu = open_menu();
        ASSERT_TRUE(menu && menu->actions().value(1));
        menu->actions()[1]->trigger();
        menu->close();
        auto *dialog = table_.findChild<QFileDialog *>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(QFileInfo(dialog->selectedFiles().value(0)).fileName(), u"loot.csv");
        Q_EMIT dialog->fileSelected(path);
        dialog->reject();
    }

    QTableWidget table_{3, 3};
    QTemporaryDir folder_;
};

TEST_F(ExportedTable, CopiesSelectedRowsAndShownColumnsInTheirOrder)
{
    EXPECT_EQ(copied_rows(table_), QString());
    table_.setSelectionMode(QAbstractItemView::MultiSelection);
    table_.selectRow(2);
    table_.selectRow(0);
    EXPECT_EQ(copied_rows(table_), u"Name\tQty\nn0\t0\nn2\t2000\n");
    table_.horizontalHeader()->moveSection(2, 0);
    table_.selectAll();
    table_.setRowHidden(1, true);
    EXPECT_EQ(copied_rows(table_), u"Qty\tName\n0\tn0\n2000\tn2\n");
}

TEST_F(ExportedTable, CtrlCAndTheMenuCopyWhatIsSelected)
{
    table_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&table_));
    table_.setFocus();
    QMenu *menu = open_menu();
    ASSERT_TRUE(menu && menu->actions().value(0));
    QAction *copy = menu->actions()[0];
    EXPECT_FALSE(copy->isEnabled()) << "nothing is selected";
    menu->close();
    QTest::keyClick(&table_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"before");
    table_.selectRow(1);
    QTest::keyClick(&table_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Name\tQty\nn1\t1000\n");
    table_.clearSelection();
    table_.selectRow(2);
    copy->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Name\tQty\nn2\t2000\n");
}

TEST_F(ExportedTable, ExportWritesTheWholeTable)
{
    QStatusBar bar(&table_);
    save_as(folder_.filePath(u"out.csv"_s));
    EXPECT_TRUE(bar.currentMessage().contains(folder_.filePath(u"out.csv"_s)));
    QFile file(folder_.filePath(u"out.csv"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "\xef\xbb\xbfName,Id,Qty\r\nn0,,0\r\nn1,,1000\r\nn2,,2000\r\n");
    EXPECT_EQ(table_.findChild<QMessageBox *>(), nullptr);
}

TEST_F(ExportedTable, AFailedExportNamesTheFileAndTheReason)
{
    const QString path = folder_.filePath(u"%2<b>/out.csv"_s);
    save_as(path);
    const auto *box = table_.findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains(path));
    EXPECT_TRUE(box->text().contains(u"No such file or directory"_s));
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
}

TEST_F(ExportedTable, AFullDiskIsToldAndTheFormerFileStays)
{
    const QString path = folder_.filePath(u"out.csv"_s);
    save_as(path);
    const QByteArray former = platform::read_file(path);
    ASSERT_FALSE(former.isEmpty());
    table_.item(0, 0)->setText(u"changed"_s);
    {
        const test::FileSizeLimit full_disk(10);
        save_as(path);
    }
    EXPECT_NE(table_.findChild<QMessageBox *>(), nullptr);
    EXPECT_EQ(platform::read_file(path), former);
}

TEST(ExportedTree, SelectedRowsOfEveryLevelStandInTheirOrder)
{
    QTreeWidget tree;
    tree.setHeaderLabels({u"Chain"_s, u"Won"_s});
    tree.setSelectionMode(QAbstractItemView::MultiSelection);
    for (const auto &name : {u"A"_s, u"B"_s}) {
        auto *parent = new QTreeWidgetItem(&tree, {name, u"9"_s});
        new QTreeWidgetItem(parent, {name + u'1'});
    }
    for (QTreeWidgetItem *item :
         {tree.topLevelItem(1)->child(0), tree.topLevelItem(1), tree.topLevelItem(0)->child(0)})
        item->setSelected(true);
    EXPECT_EQ(copied_rows(tree), u"Chain\tWon\nA1\t\nB\t9\nB1\t\n");
    EXPECT_EQ(csv_of(*tree.model()), "\xef\xbb\xbf"
                                     "Chain,Won\r\nA,9\r\nA1,\r\nB,9\r\nB1,\r\n");
}

} // namespace
} // namespace tally::ui

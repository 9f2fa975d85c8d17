#include "ui/import_progress.h"

namespace tally::ui {

ImportProgress::ImportProgress(QWidget *parent)
    : QProgressDialog(QStringLiteral("Importing mailcache..."), QStringLiteral("Cancel"), 0, 0,
                      parent)
{
    constexpr int width = 380;
    setWindowTitle(QStringLiteral("Reimport mailcache"));
    setMinimumWidth(width);
    setWindowModality(Qt::WindowModal);
    setMinimumDuration(300);
    // An import may report its end twice; a dialog that comes back in between stays in the way.
    setAutoReset(false);
    setAutoClose(false);
    setValue(0);
}

void ImportProgress::show_progress(int scanned, int total, int imported)
{
    if (maximum() != total)
        setMaximum(total);
    setValue(scanned);
    setLabelText(QStringLiteral("Importing %1/%2  (%3 new)").arg(scanned).arg(total).arg(imported));
}

} // namespace tally::ui

#pragma once

#include "queries/asker.h"

class QWidget;

namespace tally::ui {

/// Asks for what a widget shows. While the widget cannot be seen (another page is in front, the
/// window is hidden or minimised), its question is kept and asked when it comes into sight.
class ViewAsker : public queries::Asker {
    Q_OBJECT

public:
    /// \param view outlives the asker, which is its last member
    ViewAsker(queries::StoreQueries &queries, QWidget *view);

protected:
    bool eventFilter(QObject *view, QEvent *event) override;
};

} // namespace tally::ui

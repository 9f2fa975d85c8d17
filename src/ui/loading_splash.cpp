#include "ui/loading_splash.h"

#include "platform/identity.h"
#include "ui/parts/plain_label.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

namespace tally::ui {

LoadingSplash::LoadingSplash(QWidget *parent, const QString &status_text,
                             std::chrono::milliseconds minimum)
    : QDialog(parent),
      status_label_(centred_label(status_text, QStringLiteral("font-size: 10pt;"))),
      progress_(new QProgressBar), minimum_(minimum)
{
    setWindowTitle(QStringLiteral("Loading..."));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    setFixedSize(420, 160);

    progress_->setRange(0, 0);
    progress_->setTextVisible(false);
    progress_->setAccessibleName(QStringLiteral("Loading"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->setSpacing(8);
    layout->addWidget(centred_label(platform::application_name,
                                    QStringLiteral("font-size: 12pt; font-weight: bold;")));
    layout->addWidget(status_label_);
    layout->addWidget(progress_);
    shown_timer_.start();
}

void LoadingSplash::set_status(const QString &text)
{
    status_label_->setText(text);
}

void LoadingSplash::finish()
{
    const auto remaining = minimum_ - std::chrono::milliseconds(shown_timer_.elapsed());
    if (remaining < std::chrono::milliseconds(1))
        close();
    else
        QTimer::singleShot(remaining, this, &QDialog::close);
}

void LoadingSplash::closeEvent(QCloseEvent *event)
{
    if (event->spontaneous())
        event->ignore();
    else
        QDialog::closeEvent(event);
}

void LoadingSplash::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        event->ignore();
    else
        QDialog::keyPressEvent(event);
}

} // namespace tally::ui

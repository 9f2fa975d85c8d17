#pragma once

#include <QPixmap>

/// The rounds of the hero pair with the most chains among some made-up mails, scrolled to where a
/// fort fell.
QPixmap round_overview_shot();

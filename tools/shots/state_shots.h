#pragma once

class QWidget;

namespace tally::ui {
class MainWindow;
}

namespace tally::tools {

class Album;

/// What comes up over the page of chains: its lists, a tool tip, and controls under the mouse.
void take_states(const Album &album, ui::MainWindow &window);

/// The window of a first start, without a mail, a mail folder or a server.
void take_first_start(const Album &album);

void take_selector(const Album &album);

} // namespace tally::tools

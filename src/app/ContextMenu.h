// The menu of the picture, which the right button and the menu key open.
#pragma once

#include "app/Commands.h"

#include <QMenu>

#include <initializer_list>

namespace Tracelyn {

class CContextMenu : public QMenu {
    Q_OBJECT

public:
    // Shows actions of the main window, and is enabled and checked with them.
    CContextMenu(const CCommands& commands, QWidget* window);

    // How two recordings are aligned. The main window fills it when it opens.
    QMenu& GetAlignMenu() { return *m_pAlign; }

private:
    // Entries that belong together, below a line unless they are the first.
    void AddBlock(const CCommands& commands, std::initializer_list<CommandId> ids);

    QMenu* m_pAlign;
};

} // namespace Tracelyn

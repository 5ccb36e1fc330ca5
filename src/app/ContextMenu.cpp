#include "app/ContextMenu.h"

namespace Tracelyn {

CContextMenu::CContextMenu(const CCommands& commands, QWidget* window) : QMenu(window) {
    setObjectName(QStringLiteral("contextMenu"));
    AddBlock(commands, {CommandId::ShowEveryEvent, CommandId::Measure});
    AddBlock(commands, {CommandId::CompareWith});
    m_pAlign = addMenu(tr("&Align"));
    m_pAlign->menuAction()->setStatusTip(tr("Choose which samples stand together"));
    addAction(&commands.GetAction(CommandId::KeepForSet));
    addAction(&commands.GetAction(CommandId::StopComparing));
    AddBlock(commands, {CommandId::CopyPicture, CommandId::SavePicture, CommandId::CopyValues});
}

void CContextMenu::AddBlock(const CCommands& commands, std::initializer_list<CommandId> ids) {
    if (!isEmpty())
        addSeparator();
    for (const CommandId id : ids)
        addAction(&commands.GetAction(id));
}

} // namespace Tracelyn

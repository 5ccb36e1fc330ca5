// What each command looks like: menu text, prompt, tool tip, icon and keys.
#pragma once

#include "app/CommandIds.h"

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>
#include <map>

namespace Tracelyn {

// The actions of the main window, one for each command, owned by it. Their keys work whichever part of the
// window has the focus. Triggering one calls the handler with its command.
class CCommands {
public:
    using Handler = std::function<void(CommandId)>;

    CCommands(QWidget& window, const Handler& handler);

    QAction& Action(CommandId id) const { return *m_Actions.at(id); }
    void SetEnabled(CommandId id, bool enabled) { Action(id).setEnabled(enabled); }
    void SetChecked(CommandId id, bool checked) { Action(id).setChecked(checked); }

private:
    std::map<CommandId, QAction*> m_Actions;
};

} // namespace Tracelyn

#pragma once
// Qt's own diagnostics ("qt.gui.imageio: ...", the runtime folder notice)
// are for developers: the user's terminal shows the program's messages only.
// TESSELLOGRAPHE_DEBUG=1 lets them through again.
namespace tg {

void FiltrerMessagesQt();

}  // namespace tg

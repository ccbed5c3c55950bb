#pragma once
// The question asked before the drop-down history of a box is emptied.

#include "core/MessageHost.h"
#include "settings/MainWindowState.h"

namespace vantorel {

// "Clear Find History - Sure?", and the same for Replace and Folder (the
// filter's history is not cleared this way).
Message clearHistoryQuestion(HistoryBox box);

}  // namespace vantorel

#include "ui/CommandActions.h"

#include <array>

#include "ui/DeleteCommands.h"
#include "ui/FolderCommands.h"
#include "ui/Help.h"
#include "ui/Looks.h"
#include "ui/OpenCommands.h"
#include "ui/OptionsCommand.h"
#include "ui/Saving.h"

namespace ombrelian::ui {
namespace {

using Action = void (*)(const Parts&, std::optional<ListId>);

// The actions are in the order of commandTable(), which is made from the same rows.
#define NOTHING static_cast<void>(0)
#define COMMAND(name, number, kind, caption, tip, picture, key, when, state, does) \
  [](const Parts& p [[maybe_unused]], std::optional<ListId> list [[maybe_unused]]) { does; },

constexpr Action kActions[] = {
#include "frame/Commands.inc"
};

#undef COMMAND
#undef NOTHING

}  // namespace

void doCommand(CommandId id, std::optional<ListId> list, const Parts& parts) {
  const std::ptrdiff_t row = &commandOf(id) - commandTable().data();
  kActions[row](parts, list);
}

}  // namespace ombrelian::ui

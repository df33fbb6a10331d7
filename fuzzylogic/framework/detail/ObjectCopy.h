#pragma once

#include "fuzzylogic/framework/Component.h"

namespace fzy::detail {

/// Loads into a component what another one of its class would store, but the name and the links.
/// @throws what reading and loading raise; then `dest` is as it was
void CopyComponent(TComponent& source, TComponent& dest);

}  // namespace fzy::detail

#pragma once

#include "support/InputFile.h"

namespace air_quality {

using support::InputError;
using support::ReadFile;
using support::WriteFile;

}  // namespace air_quality

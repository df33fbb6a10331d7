#pragma once

namespace fzy::detail {

/// How deep objects may stand in objects in a form, so that a hostile one does not use up the stack
/// where a class has items of its own kind. The library's own go six deep.
inline constexpr int DeepestForm = 200;

/// What ends a line of a list of texts unless the form says otherwise.
inline constexpr const char16_t* UsualLineEnd = u"\n";

}  // namespace fzy::detail

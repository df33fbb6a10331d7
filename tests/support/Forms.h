#pragma once

#include <initializer_list>
#include <string>

#include "fuzzylogic/framework/StoredForm.h"

namespace fzy::test {

/// The objects as a form.
inline std::string Stored(std::initializer_list<TPersistent*> objects) {
  TMemoryStream stream;
  StoreForm(stream, objects);
  return stream.GetBytes();
}

/// Loads a form into the objects.
inline void Load(const std::string& form, std::initializer_list<TPersistent*> objects) {
  TMemoryStream stream(form);
  LoadForm(stream, objects);
}

}  // namespace fzy::test

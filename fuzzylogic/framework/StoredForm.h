#pragma once

#include <filesystem>
#include <initializer_list>
#include <span>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Stream.h"

namespace fzy {

/// A form that cannot be loaded. The message names line and property. When the fault is one that a
/// property's setter, a link or the end of loading raised, that exception is nested in this one
/// (`std::rethrow_if_nested`).
class EStoredFormError : public EException {
 public:
  EStoredFormError(const TString& reason, int line, const TString& property);

  /// The line of the form, from 1; 0 for a form without any.
  int GetLine() const noexcept { return FLine; }
  /// The way to the property from the class of the stored object, "TFuzzyLogic.Items[0].Name";
  /// empty outside the objects.
  const TString& GetProperty() const noexcept { return FProperty; }

 private:
  int FLine;
  TString FProperty;
};

// A form is the text of one or several objects with their published properties (`TFiler`), one a
// line: `docs/stored-form.md` describes it. Components of one form, and those that links lead to,
// are told apart by their names. Events are not stored, nor are links to components without a name
// outside the form: those keep what they find where the form is loaded.

/// Writes a form of the given objects, most often components.
/// @throws EConvertError (`SFormNameNeeded`) for a link to a component whose name is empty or that
///   of another one in the form; EArgumentOutOfRangeException when one of the objects is nothing;
///   what the stream and the getters raise (a counted component whose text has to be made anew
///   needs its parser). What was written before stays in the stream. Linear.
void StoreForm(TStream& stream, std::span<TPersistent* const> objects);
void StoreForm(TStream& stream, std::initializer_list<TPersistent*> objects);
/// The same as a file, which is replaced as a whole or not at all (`TFileReplacer`).
/// @throws likewise
void StoreForm(const std::filesystem::path& path, std::span<TPersistent* const> objects);
void StoreForm(const std::filesystem::path& path, std::initializer_list<TPersistent*> objects);

/// Loads a form into the given objects: each takes what is stored for its class and name (the first
/// one what comes first, where they are alike). A single one takes whatever is stored for its class
/// and, a component, the name too. All properties are replaced, those that are not in the
/// form by their defaults (one without a default must be there), without telling anybody, and
/// nothing is made anew on the way. Components are in their loading state meanwhile; when all is
/// read and linked, `Loaded` is called on each in the order of the form, on those inside others
/// first. A counted component parses then: its handlers are called before the load has succeeded,
/// and what they raise makes it fail. Links lead to components of the form, else to the one of that
/// name that the link led to before, else to one beside those of the form (with their owner). When
/// all that succeeded, those who must know are told; what handlers raise then goes on, and the form
/// stays loaded.
/// @throws EStoredFormError for every fault of the form, that it has other objects, or more, or
///   fewer, included; EArgumentOutOfRangeException when one of the objects is nothing; whatever the
///   stream raises, and what `Loaded` raises that is no EException. All objects are then as they
///   were before, and so is everything in them, objects included; what handlers did to others
///   stays. Linear; takes little memory beyond what is loaded.
void LoadForm(TStream& stream, std::span<TPersistent* const> objects);
void LoadForm(TStream& stream, std::initializer_list<TPersistent*> objects);
void LoadForm(const std::filesystem::path& path, std::span<TPersistent* const> objects);
void LoadForm(const std::filesystem::path& path, std::initializer_list<TPersistent*> objects);

/// Loads a form into new components, which `owner` owns; after a fault there are none.
/// @param classes  those that the form may have
/// @throws likewise
void LoadForm(TStream& stream, TComponent& owner, std::initializer_list<TComponentClass> classes);
void LoadForm(const std::filesystem::path& path, TComponent& owner,
              std::initializer_list<TComponentClass> classes);

}  // namespace fzy

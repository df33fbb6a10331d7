#pragma once

#include <map>
#include <set>
#include <span>
#include <string>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/Stream.h"

namespace fzy::detail {

/// Writes objects as the text of a form, by their descriptions.
class TFormWriter {
 public:
  /// @param form  the objects that make up the form, to which links may lead
  TFormWriter(TStream& stream, std::span<TPersistent* const> form);

  void Write();

 private:
  void WriteBody(TPersistent& object, int depth);
  void WriteName(const TPersistent& object, std::string_view name);
  void WriteProperty(const TPersistent& object, const TProperty& property, int depth);
  void WriteValue(const TProperty& property, const TPropertyValue& value, int depth);
  void WriteEntries(std::monostate /*none*/, int /*depth*/) {}
  void WriteEntries(const TItemEntries& entries, int depth);
  void WriteEntries(const TTextEntries& entries, int depth);
  void WriteEntries(const TPairEntries& entries, int depth);
  bool CanBeStored(const TComponent* component) const;
  void BeginLine(int depth);
  void BeginProperty(const TPersistent& object, const TProperty& property, int depth);
  void EndLine();
  void Flush();

  TStream& FStream;
  std::span<TPersistent* const> FForm;
  std::set<const TComponent*> FComponents;  // of the form
  std::map<TString, int> FNames;            // theirs, with how many have each
  std::string FBuffer;
};

}  // namespace fzy::detail

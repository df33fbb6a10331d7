#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/detail/FormText.h"
#include "fuzzylogic/framework/detail/LoadTransaction.h"

namespace fzy::detail {

/// The object that what stands under a class and a name in a form is loaded into, or nothing.
using TFormTarget = std::function<TPersistent*(const TString& className, const TString& name)>;

/// Reads the text of a form into objects, as their descriptions lead: the text never decides how
/// deep the reader goes or what it makes.
class TFormReader {
 public:
  TFormReader(TStream& stream, TLoadTransaction& transaction) noexcept
      : FLines(stream), FTransaction(transaction) {}

  /// Reads all objects, then resolves the links between components.
  /// @throws EStoredFormError
  void Read(const TFormTarget& target);
  /// Ends the loading state of the components that were read, in the order of the form. What that
  /// raises is a fault of the form.
  void EndLoading();
  [[noreturn]] void Fail(const TString& reason) const { Fail(FLines.GetNumber(), reason); }

 private:
  /// An object that is being read.
  struct TBody;
  /// The way to what is read: by a property, or by an entry of a list.
  struct TStep {
    const char* Name = nullptr;  // nothing: by the entry
    int Entry = 0;
  };
  struct TLink {
    TProperty Property;
    TString Name;
    int Line = 0;
    TString Path;
  };
  /// A component that was read, and where a fault is blamed on that shows at the end of loading.
  struct TRead {
    TComponent* Component = nullptr;
    int Line = 0;
    TString Path;
  };

  void ReadObject(const TFormTarget& target);
  /// @param isLive  whether the object was there before
  /// @param name    the name that stands behind the class, of an object of the form itself
  void ReadBody(TPersistent& object, bool isLive, const TString* name = nullptr);
  void ReadEntry(TBody& body, std::string_view rest);
  void ReadItem(TBody& body, const std::string& className);
  void ReadProperty(TBody& body, const std::string& name, std::string_view rest);
  void ReadProperty(TBody& body, const TProperty& property, std::string_view rest);
  static bool IsElsewhere(const TBody& body, const TProperty& property);
  void Complete(TBody& body);
  void CompleteEntries(TBody& body);
  TPropertyValue ReadValue(const TProperty& property, std::string_view& rest);
  void ReadLink(const TProperty& property, std::string_view rest);
  TString ReadText(std::string_view& rest);
  TNumberPair ReadPair(std::string_view& rest);
  void PassOver(const TProperty& property, std::string_view rest);
  void ResolveLinks();
  void LookBeside();
  TComponent* FindComponent(const TLink& link) const;

  void RequireEnd(std::string_view rest) const;
  template <class Action>
  void Guard(int line, const TString* path, Action action) const;
  TString GetPath() const;
  [[noreturn]] void Fail(int line, const TString& reason) const;
  [[noreturn]] void FailExpected(const TString& expected, std::string_view found) const;

  TFormLines FLines;
  TLoadTransaction& FTransaction;
  std::vector<TRead> FRead;  // those inside others before these
  std::vector<TStep> FPath;
  std::vector<TLink> FLinks;
  std::map<TString, TComponent*> FNamed;   // the components that were read; the first of a name
  std::map<TString, TComponent*> FBeside;  // those with the same owners
  std::string FRoot;                       // the class of the object that is read
  int FDepth = 0;
};

}  // namespace fzy::detail

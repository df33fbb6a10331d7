#include "fuzzylogic/framework/StoredForm.h"

#include <algorithm>
#include <deque>
#include <map>
#include <vector>

#include "fuzzylogic/framework/FileStream.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/detail/FormReader.h"
#include "fuzzylogic/framework/detail/FormWriter.h"
#include "fuzzylogic/framework/detail/LoadTransaction.h"

namespace fzy {
namespace {

TString FaultText(const TString& reason, int line, const TString& property) {
  if (property.empty()) return FormatText(SFormLineFault, {std::int64_t{line}, reason});
  return FormatText(SFormFault, {std::int64_t{line}, property, reason});
}

/// The name by which a form tells an object from others of its class.
TString NameOf(const TPersistent& object) {
  const auto* component = dynamic_cast<const TComponent*>(&object);
  return component ? component->GetName() : TString();
}

std::vector<TPin> Hold(std::span<TPersistent* const> objects) {
  if (std::find(objects.begin(), objects.end(), nullptr) != objects.end())
    throw EArgumentOutOfRangeException(SArgumentOutOfRange);
  return {objects.begin(), objects.end()};
}

/// Class and name.
using TKey = std::pair<TString, TString>;

}  // namespace

EStoredFormError::EStoredFormError(const TString& reason, int line, const TString& property)
    : EException(FaultText(reason, line, property)), FLine(line), FProperty(property) {}

void StoreForm(TStream& stream, std::span<TPersistent* const> objects) {
  const std::vector<TPin> pins = Hold(objects);
  detail::TFormWriter(stream, objects).Write();
}

void StoreForm(TStream& stream, std::initializer_list<TPersistent*> objects) {
  StoreForm(stream, std::span(objects.begin(), objects.size()));
}

void StoreForm(const std::filesystem::path& path, std::span<TPersistent* const> objects) {
  TFileReplacer file(path);
  StoreForm(file, objects);
  file.Commit();
}

void StoreForm(const std::filesystem::path& path, std::initializer_list<TPersistent*> objects) {
  StoreForm(path, std::span(objects.begin(), objects.size()));
}

void LoadForm(TStream& stream, std::span<TPersistent* const> objects) {
  const std::vector<TPin> pins = Hold(objects);
  const bool isSingle = objects.size() == 1;
  std::multimap<TKey, TPersistent*> open;
  for (TPersistent* object : objects)
    open.insert({{object->ClassName(), isSingle ? TString() : NameOf(*object)}, object});
  detail::TLoadTransaction transaction;
  detail::TFormReader reader(stream, transaction);
  reader.Read([&](const TString& className, const TString& name) -> TPersistent* {
    const TKey key(className, isSingle ? TString() : name);
    const auto found = open.lower_bound(key);
    return found == open.end() || found->first != key ? nullptr : open.extract(found).mapped();
  });
  if (!open.empty()) {
    const TKey& missing = open.begin()->first;
    reader.Fail(FormatText(SFormTargetMissing, {missing.first, missing.second}));
  }
  reader.EndLoading();
  transaction.Keep();
}

void LoadForm(TStream& stream, std::initializer_list<TPersistent*> objects) {
  LoadForm(stream, std::span(objects.begin(), objects.size()));
}

void LoadForm(const std::filesystem::path& path, std::span<TPersistent* const> objects) {
  TFileReader file(path);
  LoadForm(file, objects);
}

void LoadForm(const std::filesystem::path& path, std::initializer_list<TPersistent*> objects) {
  LoadForm(path, std::span(objects.begin(), objects.size()));
}

void LoadForm(TStream& stream, TComponent& owner, std::initializer_list<TComponentClass> classes) {
  // The last one first. Freed unless they are given up, when what was loaded has been taken back.
  std::deque<TOwned<TComponent>> made;
  detail::TLoadTransaction transaction;
  detail::TFormReader reader(stream, transaction);
  reader.Read([&](const TString& className, const TString& /*name*/) -> TPersistent* {
    const auto found = std::find_if(classes.begin(), classes.end(), [&](TComponentClass candidate) {
      return className == TString(candidate->Name);
    });
    if (found == classes.end()) return nullptr;
    made.emplace_front();
    made.front() = TOwned<TComponent>((*found)->New(&owner));
    return made.front().Get();
  });
  reader.EndLoading();
  for (TOwned<TComponent>& component : made) component.Release();
  transaction.Keep();
}

void LoadForm(const std::filesystem::path& path, TComponent& owner,
              std::initializer_list<TComponentClass> classes) {
  TFileReader file(path);
  LoadForm(file, owner, classes);
}

}  // namespace fzy

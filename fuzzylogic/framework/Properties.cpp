#include "fuzzylogic/framework/Properties.h"

#include <algorithm>
#include <bit>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {
namespace {

constexpr std::size_t UsualProperties = 16;

bool EqualObjects(TPersistent& left, TPersistent& right);

bool Equal(const TTextEntry& left, const TTextEntry& right) {
  return left.Text == right.Text && left.End == right.End;
}
bool Equal(const TNumberPair& left, const TNumberPair& right) {
  return EqualValues(left.first, right.first) && EqualValues(left.second, right.second);
}
bool Equal(TPersistent& left, TPersistent& right) { return EqualObjects(left, right); }

template <class List>
bool EqualLists(const List& left, const List& right) {
  const int count = left.GetCount();
  if (right.GetCount() != count) return false;
  for (int i = 0; i < count; ++i) {
    if (!Equal(left.GetItem(i), right.GetItem(i))) return false;
  }
  return true;
}

bool EqualEntries(const TEntries& left, const TEntries& right) {
  if (left.index() != right.index()) return false;
  return std::visit(
      [&](const auto& entries) {
        using TList = std::remove_cvref_t<decltype(entries)>;
        if constexpr (std::same_as<TList, std::monostate>)
          return true;
        else
          return EqualLists(entries, std::get<TList>(right));
      },
      left);
}

void Refresh(const TProperty& property) {
  if (property.Refresh) property.Refresh();
}

bool EqualProperty(const TProperty& left, const TProperty& right) {
  if (left.Kind != right.Kind || std::string_view(left.Name) != right.Name) return false;
  Refresh(left);
  Refresh(right);
  if (left.Kind == TProperty::TKind::Object) return EqualObjects(*left.Object, *right.Object);
  return left.Kind == TProperty::TKind::Ignored || EqualValues(left.Get(), right.Get());
}

bool EqualObjects(TPersistent& left, TPersistent& right) {
  const TFiler first(left);
  const TFiler second(right);
  const auto a = first.GetProperties();
  const auto b = second.GetProperties();
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), EqualProperty) &&
         EqualEntries(first.GetEntries(), second.GetEntries());
}

}  // namespace

TFiler::TFiler(TPersistent& object) { object.DefineProperties(*this); }

TProperty& TFiler::Add(TProperty property) {
  if (FProperties.empty()) FProperties.reserve(UsualProperties);  // a list often has none
  return FProperties.emplace_back(std::move(property));
}

TProperty& TFiler::DefineObject(const char* name, TPersistent& object) {
  TProperty& property = Add({name, TProperty::TKind::Object, {}, {}});
  property.Object = &object;
  return property;
}

void TFiler::DefineIgnored(const char* name) { Add({name, TProperty::TKind::Ignored, {}, {}}); }

const TProperty* TFiler::Find(std::string_view name) const noexcept {
  const auto found =
      std::find_if(FProperties.begin(), FProperties.end(),
                   [name](const TProperty& property) { return name == property.Name; });
  return found == FProperties.end() ? nullptr : &*found;
}

std::int64_t TFiler::RequireRange(std::int64_t value, std::int64_t least, std::int64_t most) {
  if (value < least || value > most)
    throw EArgumentOutOfRangeException(FormatText(SValueOutOfRange, {least, most}));
  return value;
}

std::int64_t TFiler::RequireChoice(std::int64_t value, std::size_t count) {
  return RequireRange(value, 0, static_cast<std::int64_t>(count) - 1);
}

void TFiler::RefuseLink(const TComponent& component) {
  throw EConvertError(FormatText(SFormLinkRefused, {component.ClassName()}));
}

bool EqualValues(const TPropertyValue& left, const TPropertyValue& right) {
  if (const auto* number = std::get_if<double>(&left)) {
    const auto* other = std::get_if<double>(&right);
    return other && std::bit_cast<std::uint64_t>(*number) == std::bit_cast<std::uint64_t>(*other);
  }
  if (const auto* link = std::get_if<TComponent*>(&left)) {
    auto* const* other = std::get_if<TComponent*>(&right);
    return other &&
           (*link == *other || (*link && *other && (*link)->GetName() == (*other)->GetName()));
  }
  return left == right;
}

bool EqualProperties(TPersistent& left, TPersistent& right) {
  const TPin first(&left);
  const TPin second(&right);
  return EqualObjects(left, right);
}

void CopyValues(TPersistent& source, TPersistent& dest) {
  const TFiler from(source);
  const TFiler to(dest);
  // All values are taken before one is set, which needs no memory.
  std::vector<std::pair<const TProperty*, TPropertyValue>> values;
  values.reserve(to.GetProperties().size());
  for (const TProperty& property : to.GetProperties()) {
    const TProperty* other = from.Find(property.Name);
    if (other && other->Kind == property.Kind && property.IsPlain() && !property.IsLate &&
        !property.IsInHeader)
      values.emplace_back(&property, other->Get());
  }
  for (auto& [property, value] : values) property->Set(std::move(value));
}

bool SetTextProperty(TPersistent& object, const TString& name, const TString& value) {
  const TPin pinned(&object);
  const TFiler filer(object);
  const TProperty* property = filer.Find(name.Utf8());
  if (!property || property->Kind != TProperty::TKind::Text) return false;
  property->Set(value);
  return true;
}

}  // namespace fzy

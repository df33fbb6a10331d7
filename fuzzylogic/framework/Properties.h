#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

class TComponent;
class TPersistent;

/// What a published property can be besides an object: a flag, a whole number, a number, a text, or
/// a link to a component. A choice is the position of its value in the enumeration.
using TPropertyValue = std::variant<bool, std::int64_t, double, TString, TComponent*>;

/// Entries that are gathered apart from their list, until they and those of the list change places.
class TStagedEntries {
 public:
  TStagedEntries() = default;
  TStagedEntries(const TStagedEntries&) = delete;
  TStagedEntries& operator=(const TStagedEntries&) = delete;
  /// Ends what was gathered or, after an exchange, what stood in the list before.
  virtual ~TStagedEntries() = default;

  /// The entries of the list and those that were gathered change places; a second call undoes the
  /// first. Tells nobody.
  virtual void Exchange() noexcept = 0;
  /// Called once, when all that is loaded has its new state for good: tells those who must know.
  /// What this raises goes on when all others have been told.
  virtual void Tell() {}
};
using TStage = std::function<std::unique_ptr<TStagedEntries>()>;

/// Gathers objects: `Begin` makes a new one, which is filled and then added by `Complete`.
class TStagedItems : public TStagedEntries {
 public:
  virtual TPersistent& Begin() = 0;
  /// @throws what the list raises for an item that it does not take
  virtual void Complete() = 0;
};
/// Objects in order.
struct TItemEntries {
  std::function<int()> GetCount;
  std::function<TPersistent&(int index)> GetItem;
  std::function<std::unique_ptr<TStagedItems>()> Stage;
};

/// A line of a list of texts, with what ends it in the list's whole text.
struct TTextEntry {
  TString Text;
  TString End;
};
class TStagedTexts : public TStagedEntries {
 public:
  virtual void Add(TTextEntry entry) = 0;
};
struct TTextEntries {
  std::function<int()> GetCount;
  std::function<TTextEntry(int index)> GetItem;
  std::function<std::unique_ptr<TStagedTexts>()> Stage;
};

using TNumberPair = std::pair<double, double>;
class TStagedPairs : public TStagedEntries {
 public:
  /// @throws what the list raises for a pair that it does not take
  virtual void Add(TNumberPair entry) = 0;
};
struct TPairEntries {
  std::function<int()> GetCount;
  std::function<TNumberPair(int index)> GetItem;
  std::function<std::unique_ptr<TStagedPairs>()> Stage;
};

/// The entries of an object that is a list; `std::monostate` for one that is none.
using TEntries = std::variant<std::monostate, TItemEntries, TTextEntries, TPairEntries>;

/// One published property of an object.
struct TProperty {
  enum class TKind : std::uint8_t { Flag, Whole, Number, Text, Link, Choice, Object, Ignored };

  const char* Name;
  TKind Kind;
  /// Of all kinds but the last two. `Set` takes, clamps and refuses a value like the public setter,
  /// but it only stores: it tells nobody, makes nothing anew, and changes no other property unless
  /// the two contradict each other. A value that `Get` gave is set again without memory.
  std::function<TPropertyValue()> Get;
  std::function<void(TPropertyValue)> Set;
  /// A property equal to its default is not stored; one without a default always is.
  std::optional<TPropertyValue> Default = {};
  /// Of a choice: the names of its values, in order.
  std::span<const char* const> Names = {};
  /// Of the kind `Object`.
  TPersistent* Object = nullptr;
  /// Brings the property up to date before it is read; may be empty.
  std::function<void()> Refresh = {};
  /// Set after all others of the object, on which its value depends.
  bool IsLate = false;
  /// The component builds on it in `Loaded`: a fault that shows there is blamed on this property.
  bool IsSource = false;
  /// The name of a component, which stands behind its class in a form.
  bool IsInHeader = false;

  /// Whether it is a flag, number, text or choice.
  bool IsPlain() const noexcept {
    return Kind != TKind::Link && Kind != TKind::Object && Kind != TKind::Ignored;
  }
};

/// Collects the description of an object: its published properties, and its entries when it is a
/// list. A class names them in `TPersistent::DefineProperties`, after those of its base; storing,
/// loading, comparing and listing all go by that, and so does `TComponent::Assign`:
///
///     void TAlarm::DefineProperties(TFiler& filer) {
///       TComponent::DefineProperties(filer);
///       filer.DefineField("Limit", FLimit);
///       filer.DefineField("Enabled", FEnabled, true);  // not stored while it is true
///       filer.DefineObject("Level", *FLevel);
///     }
///
/// The filer keeps getters and setters, which refer to the object: that must outlive it. Names are
/// ASCII letters, digits and underscores, no two of an object alike. Events are not published here.
class TFiler {
 public:
  explicit TFiler(TPersistent& object);

  // Each gives the property for more to be said of it, until the next one is defined.

  /// A property of type bool, integer (of up to 64 bits with a sign), double, TString, or an
  /// enumeration for which a function `ValueNames(value)` beside it gives the names.
  template <class Get, class Set>
  TProperty& Define(const char* name, Get get, Set set);
  /// The same with a default.
  template <class Get, class Set>
  TProperty& Define(const char* name, Get get, Set set, std::invoke_result_t<Get> byDefault);
  /// One that is just a field of the object, with or without a default.
  template <class Value, class... Default>
  TProperty& DefineField(const char* name, Value& field, Default... byDefault) {
    return Define(
        name, [&field] { return field; }, [&field](Value value) { field = std::move(value); },
        Value(byDefault)...);
  }
  /// A link to a component, which is stored by its name; the setter sees to free notification.
  /// Setting raises EConvertError for a component of another class.
  template <class Get, class Set>
  TProperty& DefineLink(const char* name, Get get, Set set);
  /// An object with a description of its own, which stays the same object. A component is loaded
  /// like one of the form, unless what holds it is an item of a list.
  TProperty& DefineObject(const char* name, TPersistent& object);
  /// A property of times past: taken from a form whatever its value, never written.
  void DefineIgnored(const char* name);

  void DefineEntries(TEntries entries) { FEntries = std::move(entries); }
  /// What the object holds besides its properties and makes anew from them in `Loaded`: it stands
  /// aside from the start, and comes back when loading fails.
  void DefineReplaced(TStage stage) { FReplaced = std::move(stage); }

  std::span<const TProperty> GetProperties() const noexcept { return FProperties; }
  /// The property of that name, or nothing.
  const TProperty* Find(std::string_view name) const noexcept;
  const TEntries& GetEntries() const noexcept { return FEntries; }
  const TStage& GetReplaced() const noexcept { return FReplaced; }

 private:
  template <class Value>
  static constexpr TProperty::TKind KindOf();
  template <class Value>
  static TPropertyValue Pack(const Value& value);
  template <class Value>
  static Value Unpack(TPropertyValue value);
  TProperty& Add(TProperty property);
  static std::int64_t RequireChoice(std::int64_t value, std::size_t count);
  static std::int64_t RequireRange(std::int64_t value, std::int64_t least, std::int64_t most);
  [[noreturn]] static void RefuseLink(const TComponent& component);

  std::vector<TProperty> FProperties;
  TEntries FEntries;
  TStage FReplaced;
};

/// Whether two values are equal: numbers to the last bit, links by the names of the components.
bool EqualValues(const TPropertyValue& left, const TPropertyValue& right);

/// Whether two objects have the same description and all that it names is equal: numbers to the
/// last bit, links by the names of the components, lists entry by entry. Linear. Counted components
/// are compared by their texts and settings.
/// @throws as storing does: a text that has to be made anew needs its parser
bool EqualProperties(TPersistent& left, TPersistent& right);

/// Copies those flags, numbers, texts and choices that both objects publish under the same name,
/// but for values that depend on other properties. Tells nobody.
void CopyValues(TPersistent& source, TPersistent& dest);

/// Sets the published text property of that name; false when the object has none. What the setter
/// raises goes on.
bool SetTextProperty(TPersistent& object, const TString& name, const TString& value);

// Implementation of the templates

template <class Value>
constexpr TProperty::TKind TFiler::KindOf() {
  if constexpr (std::same_as<Value, bool>)
    return TProperty::TKind::Flag;
  else if constexpr (std::is_enum_v<Value>)
    return TProperty::TKind::Choice;
  else if constexpr (std::integral<Value>) {
    static_assert(std::signed_integral<Value> || sizeof(Value) < sizeof(std::int64_t),
                  "a whole number must fit into 64 bits with a sign");
    return TProperty::TKind::Whole;
  } else if constexpr (std::same_as<Value, double>)
    return TProperty::TKind::Number;
  else {
    static_assert(std::same_as<Value, TString>,
                  "a property is a bool, an integer, a double, a TString or an enumeration");
    return TProperty::TKind::Text;
  }
}

template <class Value>
TPropertyValue TFiler::Pack(const Value& value) {
  if constexpr (KindOf<Value>() == TProperty::TKind::Choice)
    return RequireChoice(static_cast<std::int64_t>(value), ValueNames(value).size());
  else if constexpr (KindOf<Value>() == TProperty::TKind::Whole)
    return std::int64_t{value};
  else if constexpr (KindOf<Value>() == TProperty::TKind::Text)
    return TString(value);
  else
    return value;
}

template <class Value>
Value TFiler::Unpack(TPropertyValue value) {
  if constexpr (KindOf<Value>() == TProperty::TKind::Choice) {
    const std::int64_t choice = std::get<std::int64_t>(value);
    return static_cast<Value>(RequireChoice(choice, ValueNames(Value{}).size()));
  } else if constexpr (KindOf<Value>() == TProperty::TKind::Whole) {
    using TLimits = std::numeric_limits<Value>;
    return static_cast<Value>(
        RequireRange(std::get<std::int64_t>(value), TLimits::min(), TLimits::max()));
  } else {
    return std::get<Value>(std::move(value));
  }
}

template <class Get, class Set>
TProperty& TFiler::Define(const char* name, Get get, Set set) {
  using TValue = std::remove_cvref_t<std::invoke_result_t<Get>>;
  TProperty& property =
      Add({name, KindOf<TValue>(), [get] { return Pack<TValue>(get()); },
           [set](TPropertyValue value) { set(Unpack<TValue>(std::move(value))); }});
  if constexpr (std::is_enum_v<TValue>) property.Names = ValueNames(TValue{});
  return property;
}

template <class Get, class Set>
TProperty& TFiler::Define(const char* name, Get get, Set set, std::invoke_result_t<Get> byDefault) {
  TProperty& property = Define(name, std::move(get), std::move(set));
  property.Default = Pack<std::remove_cvref_t<std::invoke_result_t<Get>>>(byDefault);
  return property;
}

template <class Get, class Set>
TProperty& TFiler::DefineLink(const char* name, Get get, Set set) {
  using TTarget = std::invoke_result_t<Get>;
  return Add({name, TProperty::TKind::Link, [get]() -> TPropertyValue { return get(); },
              [set](TPropertyValue value) {
                auto* component = std::get<TComponent*>(value);
                auto* target = dynamic_cast<TTarget>(component);
                if (component && !target) RefuseLink(*component);
                set(target);
              }});
}

}  // namespace fzy

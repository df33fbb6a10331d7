#pragma once

#include <vector>

#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

/// A list of texts, each with an object that it may name (not owned), and with look-up of entries
/// written as name=value.
class TStrings final : public TPersistent {
 public:
  TStrings() = default;
  ~TStrings() override = default;
  TString ClassName() const override { return "TStrings"; }

  int GetCount() const noexcept { return static_cast<int>(FLines.size()); }
  /// @throws EListError for an index outside the list, as do all operations with an index
  const TString& GetString(int index) const { return Line(index).Text; }
  const TString& operator[](int index) const { return Line(index).Text; }
  TObject* GetObject(int index) const { return Line(index).Object; }

  void Add(TString text) { AddObject(std::move(text), nullptr); }
  void AddObject(TString text, TObject* object);
  void Delete(int index);
  void Clear();

  /// All lines, each closed by a line feed; setting splits at CR LF, CR or LF. A line keeps the end
  /// that it had there, so that a text that was set comes back as it was.
  TString GetText() const;
  void SetText(const TString& text);

  /// The first line equal to `text` (by the list's case rule), or -1.
  int IndexOf(const TString& text) const;
  /// The first line of the form name=value with that name (by the list's case rule), or -1.
  int IndexOfName(const TString& name) const;
  /// The value of that line; empty when there is none.
  TString GetValue(const TString& name) const;
  /// Replaces the value of that line, or appends a line name=value.
  void SetValue(const TString& name, const TString& value);

  /// Whether `IndexOf` and the look-up by name distinguish case; true at first.
  bool GetCaseSensitive() const noexcept { return FCaseSensitive; }
  void SetCaseSensitive(bool value) noexcept { FCaseSensitive = value; }

  /// From another string list: copies lines and objects. Other sources are asked to fill this list.
  void Assign(TPersistent* source) override;

  /// Blocks may nest; the list itself tells nobody.
  void BeginUpdate() noexcept { ++FUpdateCount; }
  void EndUpdate() noexcept { --FUpdateCount; }

 private:
  struct TLine {
    TString Text;
    TObject* Object = nullptr;
    const char16_t* End = u"\n";
  };

  const TLine& Line(int index) const;
  bool Same(std::u16string_view left, std::u16string_view right) const noexcept;

  std::vector<TLine> FLines;
  int FUpdateCount = 0;
  bool FCaseSensitive = true;
};

}  // namespace fzy

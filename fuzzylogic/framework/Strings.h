#pragma once

#include <functional>
#include <vector>

#include "fuzzylogic/framework/Interface.h"
#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

/// A list of texts, each with an object that it may name, and with look-up of entries written as
/// name=value. This list owns no objects and tells nobody of its changes; a descendant can, as
/// every change passes one of the virtual operations.
class TStrings : public TPersistent {
 public:
  TStrings() = default;
  ~TStrings() override = default;
  TString ClassName() const override { return "TStrings"; }

  int GetCount() const noexcept { return static_cast<int>(FLines.size()); }
  /// @throws EListError for an index outside the list, as do all operations with an index
  const TString& GetString(int index) const { return Line(index).Text; }
  const TString& operator[](int index) const { return Line(index).Text; }
  virtual void SetString(int index, TString text) { Line(index).Text = std::move(text); }
  TObject* GetObject(int index) const { return Line(index).Object; }
  /// The object before is the caller's from now on, even where the list owns its objects.
  virtual void SetObject(int index, TObject* object) { Line(index).Object = object; }

  /// Adds an entry, at the end unless the list has another place for it; the result is its index.
  int Add(TString text) { return AddObject(std::move(text), nullptr); }
  int AddObject(TString text, TObject* object) { return AddLine({std::move(text), object}); }
  /// Adds the entries of another list, or those of this one once more. Of two lists that own their
  /// objects only one can: then the copies have none.
  void AddStrings(const TStrings& source);
  /// Puts an entry before the one at `index`, or at the end when `index` is the count.
  void Insert(int index, TString text) { InsertObject(index, std::move(text), nullptr); }
  void InsertObject(int index, TString text, TObject* object) {
    InsertLine(index, {std::move(text), object});
  }
  virtual void Exchange(int left, int right) { std::swap(Line(left), Line(right)); }
  virtual void Delete(int index);
  virtual void Clear();
  /// `Clear` and what `fill` adds, inside one update block. When memory fails the lines before are
  /// back.
  void Refill(const std::function<void()>& fill);

  /// All lines, each closed by a line feed; setting splits at CR LF, CR or LF. A line keeps the end
  /// that it had there, so that a text that was set comes back as it was, with a line feed behind a
  /// last line that had none.
  TString GetText() const;
  void SetText(TString text);
  /// The text as it was set: without a line feed behind a last line that had none.
  TString GetGivenText() const;

  /// The first line equal to `text` (by the list's case rule), or -1.
  virtual int IndexOf(const TString& text) const;
  /// The first line of the form name=value with that name (by the list's case rule), or -1.
  int IndexOfName(const TString& name) const;
  /// The value of that line; empty when there is none.
  TString GetValue(const TString& name) const;
  /// Replaces the value of that line, or appends a line name=value.
  void SetValue(const TString& name, const TString& value);

  /// Whether `IndexOf` and the look-up by name distinguish case; true at first.
  bool GetCaseSensitive() const noexcept { return FCaseSensitive; }
  virtual void SetCaseSensitive(bool value) { FCaseSensitive = value; }
  /// Whether the list frees the objects of its lines.
  virtual bool GetOwnsObjects() const noexcept { return false; }

  /// From another string list: `Clear` and `AddStrings` inside one update block. Other sources are
  /// asked to fill this list. As with `Refill` and `SetText`, the lines before are back
  /// when memory fails; `AddStrings` takes its own away again.
  void Assign(TPersistent* source) override;
  /// Its entries are the lines; the objects that they name are not stored.
  void DefineProperties(TFiler& filer) override;

  /// Blocks may nest. What `BeginUpdate` throws leaves no block open, nor does `EndUpdate`.
  void BeginUpdate();
  void EndUpdate();
  bool IsUpdating() const noexcept { return FUpdateCount > 0; }

 protected:
  struct TLine {
    TString Text;
    TObject* Object = nullptr;
    const char16_t* End = u"\n";     // empty behind a last line that had none
    Ref<IInterface> Data = nullptr;  // for descendants; this list keeps none
  };

  virtual int AddLine(TLine line) {
    TStrings::InsertLine(GetCount(), std::move(line));
    return GetCount() - 1;
  }
  virtual void InsertLine(int index, TLine line);
  /// Told before lines are added how many the list may then have.
  virtual void Reserve(std::int64_t /*count*/) {}
  /// Whether the data of `source` may stand in this list too.
  virtual bool TakesDataOf(const TStrings& /*source*/) const { return false; }
  /// The outermost update block is about to open, or has closed.
  virtual void SetUpdating(bool /*value*/) {}
  /// Whether two texts count as one by the list's case rule.
  virtual bool Same(std::u16string_view left, std::u16string_view right) const;

  /// Raises the error for an index outside 0 to `end` - 1.
  static void RequireIndex(int index, int end);
  const TLine& Line(int index) const;
  TLine& Line(int index) { return const_cast<TLine&>(std::as_const(*this).Line(index)); }

  std::vector<TLine> FLines;
  bool FCaseSensitive = true;

 private:
  class TStagedLines;
  class TReplaced;

  int FUpdateCount = 0;
  std::vector<TLine>* FReplaced = nullptr;  // takes the lines that are about to be replaced
};

}  // namespace fzy

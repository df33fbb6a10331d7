#pragma once

#include <memory>

#include "fuzzylogic/common/StreamTokenList.h"
#include "fuzzylogic/interfaces/FuzzyInterfaces.h"

namespace fzy {

class TFuzzySet;
class IFuzzyStreamTokenList;

/// The `DataType` of a token of this kind.
constexpr int KindOf(TFuzzyStreamTokenType kind) { return static_cast<int>(kind); }

/// A lexical unit of the definition language, or a value that stands among them. Its `DataType` is
/// a `TFuzzyStreamTokenType`, or for punctuation the character's code (38 40 41 61 91 93 124 126
/// for & ( ) = [ ] | ~).
class IFuzzyStreamToken : public IBaseStreamToken {
 public:
  using Base = IBaseStreamToken;
  static constexpr TGuid Id{
      0x3A1D7E90, 0x58C4, 0x4E0F, {0xB1, 0x72, 0x9C, 0x06, 0x4D, 0xE8, 0x21, 0x5A}};

  virtual Ref<IInterface> GetIntfValue() const = 0;
  virtual Ref<IFuzzySet> GetFuzzySetIntf() const = 0;
  virtual Ref<IFuzzyStreamTokenList> GetList() const = 0;
  virtual TObject* GetObjValue() const = 0;
  /// The setters store a payload and set the kind that belongs to it; nothing clears the kind to
  /// `fstNone`. An interface set and a list share one field; objects are not owned.
  virtual void SetFuzzySetIntf(const Ref<IFuzzySet>& value) = 0;
  virtual void SetIntfValue(const Ref<IInterface>& value) = 0;
  virtual void SetList(const Ref<IFuzzyStreamTokenList>& value) = 0;
  virtual void SetObjValue(TObject* value) = 0;

  /// The column in the line that `GetLineNumber` names, counted in UTF-16 units from 1; 0 when the
  /// token came from no text. A token that began in an earlier line, a string with a line break in
  /// it, stands in column 1 of its last line. Columns from 16777215 on are given as that.
  virtual int GetColumn() const = 0;
  virtual void SetColumn(int value) = 0;

 protected:
  ~IFuzzyStreamToken() = default;
};

/// Whether the token is of one of the kinds; one of punctuation never is.
bool IsOfKind(const IFuzzyStreamToken& token, TFuzzyStreamTokenTypes kinds);

/// An ordered list of tokens; it holds references to them.
class IFuzzyStreamTokenList : public IBaseStreamTokenList {
 public:
  using Base = IBaseStreamTokenList;
  static constexpr TGuid Id{
      0x91C5B2D7, 0x0E36, 0x4A88, {0x8F, 0x43, 0xD1, 0x7A, 0x62, 0x0B, 0x95, 0xEC}};

  /// @throws EListError for an index outside the list, as do `Put` and `Insert`; also `First` and
  /// `Last`
  ///   of an empty list
  virtual Ref<IFuzzyStreamToken> Get(int index) const = 0;
  virtual void Put(int index, const Ref<IFuzzyStreamToken>& value) = 0;
  /// Same number of tokens, each equal to its counterpart (`IBaseStreamToken::Equals`).
  virtual bool Equals(const Ref<IFuzzyStreamTokenList>& list) const = 0;
  /// Appends; the result is the new index.
  virtual int Add(const Ref<IFuzzyStreamToken>& item) = 0;
  virtual Ref<IFuzzyStreamToken> First() const = 0;
  virtual Ref<IFuzzyStreamToken> Last() const = 0;
  /// By identity; -1 when absent.
  virtual int IndexOf(const Ref<IFuzzyStreamToken>& item) const = 0;
  virtual void Insert(int index, const Ref<IFuzzyStreamToken>& item) = 0;
  /// Adds all tokens of `list` at the end.
  virtual void Append(const Ref<IFuzzyStreamTokenList>& list) = 0;
  /// The index that the item had, or -1.
  virtual int Remove(const Ref<IFuzzyStreamToken>& item) = 0;

 protected:
  ~IFuzzyStreamTokenList() = default;
};

/// The token. 56 bytes; a payload or a tag takes 24 more.
class TFuzzyStreamToken final : public TBaseStreamTokenOf<IFuzzyStreamToken> {
 public:
  static Ref<TFuzzyStreamToken> Create() { return {new TFuzzyStreamToken}; }
  ~TFuzzyStreamToken() override;
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  /// The stored text; for punctuation without one, the character.
  const TString& GetText() const override;
  std::intptr_t GetTag() const override;
  void SetTag(std::intptr_t value) override;
  Ref<IBaseStreamToken> Clone() const override;
  /// Copies column and payload too, when the source is a token of this language.
  void Assign(const IBaseStreamToken& source) override;
  /// Nested lists are compared by their texts, other payloads by identity.
  bool Equals(const IBaseStreamToken& other) const override;
  /// By kind: "<interface>", the list's text, the set's points, "<object>", the set's expression;
  /// else as the base.
  TString ToString() const override;

  Ref<IInterface> GetIntfValue() const override;
  Ref<IFuzzySet> GetFuzzySetIntf() const override;
  Ref<IFuzzyStreamTokenList> GetList() const override;
  TObject* GetObjValue() const override;
  void SetFuzzySetIntf(const Ref<IFuzzySet>& value) override;
  void SetIntfValue(const Ref<IInterface>& value) override;
  void SetList(const Ref<IFuzzyStreamTokenList>& value) override;
  void SetObjValue(TObject* value) override;
  int GetColumn() const override { return FColumn; }
  void SetColumn(int value) override { FColumn = value; }

  /// The object when it is a fuzzy set, else nothing.
  TFuzzySet* GetFuzzySet() const;
  void SetFuzzySet(TFuzzySet* value);

 private:
  friend class TFuzzyStreamTokenList;
  struct TPayload {
    Ref<IInterface> Intf;
    TObject* Object = nullptr;
    std::intptr_t Tag = 0;
  };

  TFuzzyStreamToken() = default;
  TPayload& Payload();
  void SetIntf(const Ref<IInterface>& value, TFuzzyStreamTokenType kind);

  std::unique_ptr<TPayload> FPayload;
};

/// The list. Lists may nest a million deep: freeing and printing them takes no stack.
class TFuzzyStreamTokenList final : public TInterfaced<IFuzzyStreamTokenList> {
 public:
  static Ref<TFuzzyStreamTokenList> Create() { return {new TFuzzyStreamTokenList}; }
  ~TFuzzyStreamTokenList() override;

  int GetValueCount() const override { return FTokens.GetCount(); }
  Ref<IBaseStreamToken> GetBaseStreamToken(int index) const override { return FTokens.Get(index); }
  /// A token of another language is refused with EConvertError.
  void PutBaseStreamToken(int index, const Ref<IBaseStreamToken>& value) override;
  Ref<IBaseStreamToken> FirstBaseStreamToken() const override { return FTokens.First(); }
  Ref<IBaseStreamToken> LastBaseStreamToken() const override { return FTokens.Last(); }
  void Delete(int index) override { FTokens.Delete(index); }
  void Clear() override { FTokens.Clear(); }
  std::intptr_t GetTag() const override { return FTag; }
  void SetTag(std::intptr_t value) override { FTag = value; }
  TString ToString() const override;

  Ref<IFuzzyStreamToken> Get(int index) const override { return FTokens.Get(index); }
  void Put(int index, const Ref<IFuzzyStreamToken>& value) override { FTokens.Put(index, value); }
  bool Equals(const Ref<IFuzzyStreamTokenList>& list) const override;
  int Add(const Ref<IFuzzyStreamToken>& item) override { return FTokens.Add(item); }
  Ref<IFuzzyStreamToken> First() const override { return FTokens.First(); }
  Ref<IFuzzyStreamToken> Last() const override { return FTokens.Last(); }
  int IndexOf(const Ref<IFuzzyStreamToken>& item) const override { return FTokens.IndexOf(item); }
  void Insert(int index, const Ref<IFuzzyStreamToken>& item) override {
    FTokens.Insert(index, item);
  }
  void Append(const Ref<IFuzzyStreamTokenList>& list) override;
  int Remove(const Ref<IFuzzyStreamToken>& item) override { return FTokens.Remove(item); }
  /// A new list of the same tokens.
  Ref<IFuzzyStreamTokenList> Clone() const;
  /// Holds the tokens of `source` instead of its own.
  void Assign(const Ref<IFuzzyStreamTokenList>& source);

 private:
  TFuzzyStreamTokenList() = default;

  static Ref<TFuzzyStreamTokenList> TakeLastList(IFuzzyStreamToken& token) noexcept;

  TTokenArray<IFuzzyStreamToken> FTokens;
  std::intptr_t FTag = 0;
  Ref<TFuzzyStreamTokenList> FNext;  // of lists that go
};

}  // namespace fzy

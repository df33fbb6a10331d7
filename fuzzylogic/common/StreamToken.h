#pragma once

#include "fuzzylogic/common/SparseText.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Interface.h"

namespace fzy {

/// Kinds of token that the base token knows; an application numbers its own kinds beyond them.
inline constexpr int btNone = 0;
inline constexpr int btInteger = 3;
inline constexpr int btFloat = 4;

/// A token of a text: its kind, where it stood, and what it holds.
class IBaseStreamToken : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x6D0F3C51, 0x4F0B, 0x4C55, {0x9B, 0x1E, 0x27, 0x8A, 0x50, 0xC3, 0x7D, 0x11}};

  virtual int GetDataType() const = 0;
  virtual void SetDataType(int value) = 0;
  /// The line of the source, counted from 1; 0 when the token came from no text.
  virtual int GetLineNumber() const = 0;
  virtual void SetLineNumber(int value) = 0;
  virtual double GetNumber() const = 0;
  virtual void SetNumber(double value) = 0;
  virtual const TString& GetText() const = 0;
  virtual void SetText(const TString& value) = 0;
  /// The blanks, line breaks and comments that preceded the token.
  virtual const TString& GetWhitespace() const = 0;
  virtual void SetWhitespace(const TString& value) = 0;
  virtual std::intptr_t GetTag() const = 0;
  virtual void SetTag(std::intptr_t value) = 0;

  /// A number kind as the shortest decimal text that reads back; any other kind as its `Text`.
  virtual TString ToString() const = 0;
  virtual Ref<IBaseStreamToken> Clone() const = 0;
  virtual void Assign(const IBaseStreamToken& source) = 0;
  /// Same kind, same number and same text; where the token stood does not count.
  virtual bool Equals(const IBaseStreamToken& other) const = 0;

 protected:
  ~IBaseStreamToken() = default;
};

/// `IBaseStreamToken`, all but the tag, carried out for an interface that extends it. Kept small
/// because a text makes millions of them: 48 bytes, and more only for what few tokens have.
template <class I>
class TBaseStreamTokenOf : public TInterfaced<I> {
 public:
  int GetDataType() const final { return FDataType; }
  void SetDataType(int value) final { FDataType = value; }
  int GetLineNumber() const final { return FLineNumber; }
  void SetLineNumber(int value) final { FLineNumber = value; }
  double GetNumber() const final { return FNumber; }
  void SetNumber(double value) final { FNumber = value; }
  const TString& GetText() const override { return FText.Get(); }
  void SetText(const TString& value) override { FText.Set(value); }
  const TString& GetWhitespace() const final { return FWhitespace.Get(); }
  void SetWhitespace(const TString& value) final { FWhitespace.Set(value); }

  TString ToString() const override {
    const bool number = FDataType == btInteger || FDataType == btFloat;
    return number ? FormatShortest(FNumber) : this->GetText();
  }
  void Assign(const IBaseStreamToken& source) override {
    TSparseText text, whitespace;
    text.Set(source.GetText());
    whitespace.Set(source.GetWhitespace());
    this->SetTag(source.GetTag());  // which may need memory too; nothing else does from here on
    FText.Swap(text);
    FWhitespace.Swap(whitespace);
    FDataType = source.GetDataType();
    FLineNumber = source.GetLineNumber();
    FNumber = source.GetNumber();
  }
  bool Equals(const IBaseStreamToken& other) const override {
    return FDataType == other.GetDataType() && FNumber == other.GetNumber() &&
           this->GetText() == other.GetText();
  }

 protected:
  TBaseStreamTokenOf() = default;
  ~TBaseStreamTokenOf() override = default;

  bool HasText() const noexcept { return !FText.IsEmpty(); }

  int FColumn = 0;  // for interfaces that have one: here it fills a gap

 private:
  int FDataType = btNone;
  int FLineNumber = 0;
  double FNumber = 0;
  TSparseText FText;
  TSparseText FWhitespace;
};

/// The base token as it is.
class TBaseStreamToken final : public TBaseStreamTokenOf<IBaseStreamToken> {
 public:
  static Ref<IBaseStreamToken> Create() { return {new TBaseStreamToken}; }

  std::intptr_t GetTag() const override { return FTag; }
  void SetTag(std::intptr_t value) override { FTag = value; }
  Ref<IBaseStreamToken> Clone() const override {
    Ref<IBaseStreamToken> copy = Create();
    copy->Assign(*this);
    return copy;
  }

 private:
  std::intptr_t FTag = 0;
};

}  // namespace fzy

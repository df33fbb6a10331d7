#pragma once

#include <vector>

#include "fuzzylogic/common/StreamToken.h"

namespace fzy {

/// An ordered list of counted tokens.
class IBaseStreamTokenList : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x0E6C2F0A, 0x93D1, 0x4B27, {0xA4, 0x6D, 0x55, 0x1B, 0xF0, 0x38, 0x2C, 0x94}};

  virtual int GetValueCount() const = 0;
  /// Replacing, inserting and reading by index raise `EListError` outside the list.
  virtual Ref<IBaseStreamToken> GetBaseStreamToken(int index) const = 0;
  virtual void PutBaseStreamToken(int index, const Ref<IBaseStreamToken>& value) = 0;
  virtual Ref<IBaseStreamToken> FirstBaseStreamToken() const = 0;
  virtual Ref<IBaseStreamToken> LastBaseStreamToken() const = 0;
  virtual void Delete(int index) = 0;
  virtual void Clear() = 0;
  virtual std::intptr_t GetTag() const = 0;
  virtual void SetTag(std::intptr_t value) = 0;
  /// The texts of the tokens with a blank between.
  virtual TString ToString() const = 0;

 protected:
  ~IBaseStreamTokenList() = default;
};

/// The list's storage and operations, typed by the token interface it holds; the lists of an
/// application forward to it. Reading by index and appending take constant time.
template <class Token>
class TTokenArray {
 public:
  using TItem = Ref<Token>;

  int GetCount() const noexcept { return static_cast<int>(FItems.size()); }
  const TItem& Get(int index) const { return FItems[Checked(index, GetCount())]; }
  void Put(int index, TItem value) { FItems[Checked(index, GetCount())] = std::move(value); }
  int Add(TItem item) {
    if (FItems.capacity() == 0) FItems.reserve(4);  // the arguments of most calls
    FItems.push_back(std::move(item));
    return GetCount() - 1;
  }
  void Insert(int index, TItem item) {
    FItems.insert(FItems.begin() + static_cast<std::ptrdiff_t>(Checked(index, GetCount() + 1)),
                  std::move(item));
  }
  void Delete(int index) {
    FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(Checked(index, GetCount())));
  }
  void Clear() noexcept { FItems.clear(); }
  const TItem& First() const { return Get(0); }
  const TItem& Last() const { return Get(GetCount() - 1); }

  /// The index of the item, by identity, or -1.
  int IndexOf(const TItem& item) const {
    for (int i = 0; i < GetCount(); ++i) {
      if (FItems[static_cast<std::size_t>(i)] == item) return i;
    }
    return -1;
  }
  /// Takes the item out and returns the index it had, or -1.
  int Remove(const TItem& item) {
    const int index = IndexOf(item);
    if (index >= 0) Delete(index);
    return index;
  }
  /// Same number of tokens, each equal to its counterpart.
  bool Equals(const TTokenArray& other) const {
    if (GetCount() != other.GetCount()) return false;
    for (std::size_t i = 0; i < FItems.size(); ++i) {
      if (!FItems[i]->Equals(*other.FItems[i])) return false;
    }
    return true;
  }

  std::vector<TItem>& Items() noexcept { return FItems; }
  const std::vector<TItem>& Items() const noexcept { return FItems; }

 private:
  static std::size_t Checked(int index, int limit);

  std::vector<TItem> FItems;
};

/// @throws EListError
[[noreturn]] void RaiseTokenIndex(int index);

template <class Token>
std::size_t TTokenArray<Token>::Checked(int index, int limit) {
  if (index < 0 || index >= limit) RaiseTokenIndex(index);
  return static_cast<std::size_t>(index);
}

}  // namespace fzy

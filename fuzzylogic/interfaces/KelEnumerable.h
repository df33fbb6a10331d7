#pragma once

#include <vector>

#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

/// A sequence whose elements are visited by position, for `for (const T& item : sequence)`. It is
/// an assignable object as well. A sequence must outlive a walk over it; one that changes meanwhile
/// is walked on from the position reached.
template <class T>
class TKelEnumerable : public TPersistent {
 public:
  using TPersistent::Free;  // of one that was made on the heap

  class TEnumerator {
   public:
    TEnumerator(const TKelEnumerable* items, int position) : FItems(items), FPosition(position) {}
    T operator*() const { return FItems->DoGet(FPosition); }
    TEnumerator& operator++() {
      FPosition = FItems->DoNext(FPosition);
      return *this;
    }
    friend bool operator!=(const TEnumerator& at, const TEnumerator& end) {
      return at.FPosition != end.FPosition;
    }

   private:
    const TKelEnumerable* FItems;
    int FPosition;
  };

  TEnumerator begin() const { return {this, DoNext(-1)}; }
  TEnumerator end() const { return {this, -1}; }

  /// Copies of all elements, in the order of the walk.
  virtual std::vector<T> ToArray() const {
    std::vector<T> items;
    for (T item : *this) items.push_back(std::move(item));
    return items;
  }

 protected:
  TKelEnumerable() = default;
  ~TKelEnumerable() override = default;

  /// The position behind another, -1 behind the last; the first comes behind -1.
  virtual int DoNext(int position) const = 0;
  virtual T DoGet(int position) const = 0;
};

}  // namespace fzy

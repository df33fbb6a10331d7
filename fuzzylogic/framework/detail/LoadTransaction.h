#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "fuzzylogic/framework/Persistent.h"
#include "fuzzylogic/framework/Properties.h"

namespace fzy {

class TComponent;

namespace detail {

/// What is being loaded into objects: until it is kept, all of it can be taken back, and it is when
/// the transaction ends before.
class TLoadTransaction {
 public:
  TLoadTransaction() = default;
  TLoadTransaction(const TLoadTransaction&) = delete;
  TLoadTransaction& operator=(const TLoadTransaction&) = delete;
  ~TLoadTransaction();

  /// Begins to load an object: keeps its memory, puts a component in its loading state, and what it
  /// makes anew from its properties aside.
  /// @param isPart  whether the object is a part of another one, which keeps its memory
  void Begin(TPersistent& target, bool isPart);
  /// Remembers all values of an object that was there before, or of one that stands in it.
  void Remember(const TFiler& description);
  /// Lets gathered entries take the place of those that were there before.
  void Exchange(std::unique_ptr<TStagedEntries> entries);
  /// All is loaded: tells those who must know. What handlers raise goes on once all are told.
  void Keep();

 private:
  struct TValue {
    std::function<void(TPropertyValue)> Set;
    TPropertyValue Value;
    bool IsLate;
  };
  using TValues = std::vector<TValue>;  // of one object
  void TakeBack() noexcept;
  static void SetAgain(TValues& values, bool late) noexcept;

  std::vector<TPin> FPins;
  std::vector<TComponent*> FLoading;
  std::vector<std::unique_ptr<TStagedEntries>> FStaged;  // all exchanged
  std::vector<TValues> FValues;
  bool FIsKept = false;
};

}  // namespace detail
}  // namespace fzy

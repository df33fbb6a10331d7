#include <gtest/gtest.h>

#include "fuzzylogic/common/NamedCollection.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

class TNamed final : public TGCollectionItem {
 public:
  explicit TNamed(TCollection* list) { SetCollection(list); }
  TString ClassName() const override { return "TNamed"; }
  const TString& GetItemName() const override { return FName; }
  bool IsPreferred() const override { return FPreferred; }
  void SetName(const TString& value) { StoreKey(FName, value); }
  void SetPreferred(bool value) { StoreKey(FPreferred, value); }

 private:
  TString FName;
  bool FPreferred = false;
};

class TNames final : public TGCollection {
 public:
  TString ClassName() const override { return "TNames"; }
  TNamed* At(int index) const { return static_cast<TNamed*>(ItemAt(index)); }

 protected:
  TCollectionItem* AddItem() override { return new TNamed(this); }
};

TEST(NamedCollection, FindsTheFirstOfANameWhateverHappensToTheItems) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  TNames list;
  for (int step = 0; step < 20'000; ++step) {
    const int count = list.GetCount();
    const TString name(static_cast<std::size_t>(random.Below(4)), random.OneIn(2) ? u'a' : u'b');
    switch (random.Below(count < 40 ? 5 : 7)) {
      case 0:
      case 1:
        (new TNamed(&list))->SetName(name);
        break;
      case 2:
        if (count > 0) list.At(random.Below(count))->SetName(name);
        break;
      case 3:
        if (count > 0) list.At(random.Below(count))->SetIndex(random.Below(count));
        break;
      case 4:
        if (count > 0) list.At(random.Below(count))->SetPreferred(random.OneIn(2));
        break;
      default:
        list.Delete(random.OneIn(2) ? count - 1 : random.Below(count));
    }
    int first = -1, preferred = -1;
    for (int i = list.GetCount() - 1; i >= 0; --i) {
      if (list.At(i)->GetItemName() != name) continue;
      first = i;
      if (list.At(i)->IsPreferred()) preferred = i;
    }
    ASSERT_EQ(list.IndexOf(name), first) << step;
    ASSERT_EQ(list.IndexOfPreferred(name), preferred < 0 ? first : preferred) << step;
  }
}

}  // namespace
}  // namespace fzy

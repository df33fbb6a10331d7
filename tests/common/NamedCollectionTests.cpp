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
  void SetName(const TString& value) { StoreName(FName, value); }

 private:
  TString FName;
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
    switch (random.Below(count < 40 ? 4 : 6)) {
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
      default:
        list.Delete(random.OneIn(2) ? count - 1 : random.Below(count));
    }
    const int after = random.Below(list.GetCount() + 1) - 1;
    int expected = -1;
    for (int i = list.GetCount() - 1; i > after; --i)
      if (list.At(i)->GetItemName() == name) expected = i;
    ASSERT_EQ(list.IndexOf(name, after), expected) << step;
  }
}

}  // namespace
}  // namespace fzy

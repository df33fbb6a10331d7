#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/framework/Exception.h"

namespace fzy {
namespace {

class TNamed final : public TGCollectionItem {
 public:
  TNamed(TCollection* list, const char* name) : FName(name) { SetCollection(list); }
  TString ClassName() const override { return "TNamed"; }
  const TString& GetItemName() const override { return FName; }
  void Notification(TGCollectionItem* item, TOperation operation) override {
    EXPECT_EQ(operation, opRemove);
    EXPECT_EQ(item->GetCollection(), nullptr) << "it has left";
    Log += FName + " hears of " + item->GetItemName() + ". ";
    if (const auto handler = Handler) handler(item);
  }

  static inline TString Log;
  std::function<void(TGCollectionItem*)> Handler;

 private:
  TString FName;
};

class TNamedList final : public TGCollection {
 public:
  TString ClassName() const override { return "TNamedList"; }
  TCollectionItem* AddItem() override { return new TNamed(this, ""); }
};

TEST(NamedCollection, FindsTheFirstOfAName) {
  TNamedList list;
  for (const char* name : {"a", "B", "", "b", "B"}) new TNamed(&list, name);
  EXPECT_EQ(list.IndexOf("B"), 1);
  EXPECT_EQ(list.IndexOf("b"), 3);
  EXPECT_EQ(list.IndexOf(""), 2);
  EXPECT_EQ(list.IndexOf("c"), -1);
}

TEST(NamedCollection, ItemsHearOfEachOthersEndOnceWhicheverGoesFirst) {
  for (const bool watchedFirst : {true, false}) {
    TNamedList list;
    auto* watched = new TNamed(&list, "watched");
    auto* watcher = new TNamed(&list, "watcher");
    auto* third = new TNamed(&list, "third");
    for (TNamed* item : {watcher, third, watcher, watched}) watched->FreeNotification(item);
    watched->FreeNotification(nullptr);
    third->RemoveFreeNotification(watched);
    TNamed::Log = "";
    (watchedFirst ? watched : watcher)->Free();
    list.Clear();
    EXPECT_EQ(TNamed::Log,
              watchedFirst ? "watcher hears of watched. " : "watched hears of watcher. ");
  }
}

TEST(NamedCollection, ItemGoesWhateverItsWatchersDo) {
  TNamedList list;
  TNamed* watcher = nullptr;
  const std::function<void(TGCollectionItem*)> deeds[] = {
      [](TGCollectionItem*) { throw EException("watcher"); },
      [&](TGCollectionItem*) { list.Clear(); },
      [&](TGCollectionItem* going) { going->FreeNotification(watcher); }};
  for (const auto& deed : deeds) {
    auto* going = new TNamed(&list, "going");
    going->FreeNotification(new TNamed(&list, "first"));
    going->FreeNotification(watcher = new TNamed(&list, "second"));
    watcher->Handler = deed;
    TNamed::Log = "";
    if (&deed == &deeds[0]) {
      EXPECT_THROW(going->Free(), EException);
    } else {
      going->Free();
    }
    list.Clear();
    EXPECT_EQ(TNamed::Log.Slice(0, 23), "second hears of going. ");
    EXPECT_EQ(TNamed::Log.Find(u"second", 1), TString::npos) << TNamed::Log;
  }
}

}  // namespace
}  // namespace fzy

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

TEST(NamedCollection, ItemsHearOfEachOthersEndWhicheverGoesFirst) {
  for (const bool watchedFirst : {true, false}) {
    TNamedList list;
    auto* watched = new TNamed(&list, "watched");
    auto* watcher = new TNamed(&list, "watcher");
    auto* third = new TNamed(&list, "third");
    for (int twice = 0; twice < 2; ++twice) watched->FreeNotification(watcher);
    watched->FreeNotification(third);
    third->RemoveFreeNotification(watched);
    watched->FreeNotification(watched);
    watched->FreeNotification(nullptr);
    TNamed::Log = "";
    (watchedFirst ? watched : watcher)->Free();
    EXPECT_EQ(TNamed::Log,
              watchedFirst ? "watcher hears of watched. " : "watched hears of watcher. ");
    list.Clear();
    EXPECT_EQ(TNamed::Log.Find(u"third"), TString::npos);
    EXPECT_EQ(TNamed::Log.Find(u"hears", 20), TString::npos) << TNamed::Log;
  }
}

TEST(NamedCollection, ItemGoesWhateverItsWatchersDo) {
  TNamedList list;
  TNamed* second = nullptr;
  const std::function<void(TGCollectionItem*)> deeds[] = {
      [](TGCollectionItem*) { throw EException("watcher"); },
      [&](TGCollectionItem*) { list.Clear(); },
      [&](TGCollectionItem* going) { going->FreeNotification(second); }};
  for (const auto& deed : deeds) {
    auto* going = new TNamed(&list, "going");
    const TPin pinned(going);
    auto* first = new TNamed(&list, "first");
    second = new TNamed(&list, "second");
    going->FreeNotification(first);
    going->FreeNotification(second);
    second->Handler = deed;
    TNamed::Log = "";
    bool thrown = false;
    try {
      going->Free();
    } catch (const EException&) {
      thrown = true;
    }
    EXPECT_EQ(thrown, &deed == &deeds[0]);
    list.Clear();
    EXPECT_EQ(TNamed::Log.Slice(0, 23), "second hears of going. ");
    EXPECT_EQ(TNamed::Log.Find(u"second", 1), TString::npos) << TNamed::Log;
  }
}

}  // namespace
}  // namespace fzy

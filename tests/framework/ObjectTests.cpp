#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "tests/support/Refusal.h"

namespace fzy {
namespace {

class TNode final : public TCollectionItem {
 public:
  static inline int Alive = 0;

  explicit TNode(const std::string& name) : Name(name) { ++Alive; }
  ~TNode() override {
    const TPin pinned(this);  // as any operation does that a destructor calls
    --Alive;
  }

  TString ClassName() const override { return "TNode"; }
  void Assign(TPersistent* source) override {
    auto* node = dynamic_cast<TNode*>(source);
    if (!node) return TCollectionItem::Assign(source);
    Rename(node->Name);
  }
  void Rename(const std::string& name) {
    Name = name;
    Changed(false);
  }
  using TCollectionItem::Changed;

  std::string Name;
  bool Joined = false;  // as the list's notifications tell it
};

/// Writes down each call of a hook; a handler may then do as it likes.
class TNodes final : public TCollection {
 public:
  static inline int Alive = 0;

  explicit TNodes(const std::string& names = "") {
    ++Alive;
    for (const char name : names) Add(std::string(1, name));
    Log.clear();
  }
  ~TNodes() override { --Alive; }

  TString ClassName() const override { return "TNodes"; }
  TNode* At(int index) const { return static_cast<TNode*>(ItemAt(index)); }
  TNode* Add(const std::string& name) {
    const TPin self(this);
    auto* node = new TNode(name);
    const TPin pinned(node);
    node->SetCollection(this);
    return node->IsFreed() ? nullptr : node;
  }
  void Insert(const std::string& name) {
    const TPin self(this);
    if (TNode* node = Add(name)) node->SetIndex(0);
  }
  std::string Names() const {
    std::string names;
    for (int i = 0; i < GetCount(); ++i) names += At(i)->Name;
    return names;
  }
  std::string TakeLog() { return std::exchange(Log, {}); }
  std::function<void(const std::string& hook, TNode* item)> Handler;

 protected:
  TCollectionItem* AddItem() override { return Add(""); }
  void Update(TCollectionItem* item) override { Tell("update", static_cast<TNode*>(item)); }
  void Notify(TCollectionItem* item, TCollectionNotification action) override {
    constexpr const char* hooks[] = {"added", "extracting", "deleting"};
    auto* node = static_cast<TNode*>(item);
    EXPECT_EQ(node->Joined, action != cnAdded) << "told twice, or never of the other";
    node->Joined = action != cnExtracting;
    Tell(hooks[static_cast<int>(action)], node);
  }

 private:
  void Tell(const std::string& hook, TNode* item) {
    Log += (Log.empty() ? "" : " ") + hook;
    Log += item ? ' ' + item->Name + '@' + std::to_string(item->GetIndex()) : '[' + Names() + ']';
    if (const auto handler = Handler) handler(hook, item);
    ++FTold;  // a list goes on after its handlers, even the last time
  }

  std::string Log;
  int FTold = 0;
};

using test::MessageOf;

TNodes* Other = nullptr;  // a second list that operations and handlers use

// clang-format off
const struct TCase {
  const char* Name;
  std::function<void(TNodes&)> Run;
  const char* Log;
} Operations[] = {
    {"insert", [](TNodes& l) { l.Insert("D"); }, "added D@3 update[ABCD] update[DABC]"},
    {"delete", [](TNodes& l) { l.Delete(1); }, "deleting B@1 extracting B@1 update[AC]"},
    {"free", [](TNodes& l) { l.At(1)->Free(); }, "extracting B@1 update[AC]"},
    {"clear", [](TNodes& l) { l.Clear(); }, "extracting C@2 extracting B@1 extracting A@0 update[]"},
    {"move up", [](TNodes& l) { l.At(0)->SetIndex(2); }, "update[BCA]"},
    {"stay", [](TNodes& l) { l.At(1)->SetIndex(1); }, ""},
    {"change", [](TNodes& l) { l.At(1)->Rename("X"); }, "update X@1"},
    {"change of all", [](TNodes& l) { l.At(1)->Changed(true); }, "update[ABC]"},
    {"assign", [](TNodes& l) { l.Assign(Other); },
     "extracting C@2 extracting B@1 extracting A@0 added @0 added @1 update[XY]"},
    {"assign itself", [](TNodes& l) { l.Assign(&l); }, ""},
    {"leave and return", [](TNodes& l) { const TPin self(&l); TNode* node = l.At(0); const TPin pinned(node);
        for (TNodes* next : {Other, &l}) node->SetCollection(next);
        node->Free(); },
     "extracting A@0 update[BC] added A@2 update[BCA] extracting A@2 update[BC]"},
    {"join", [](TNodes& l) { Other->At(0)->SetCollection(&l); }, "added X@3 update[ABCX]"},
    {"blocks", [](TNodes& l) { TUpdateBlock outer(l); l.Add("D"); TUpdateBlock inner(l);
        if (l.GetCount() > 1) l.Delete(1);
        inner.Close();
        if (l.GetCount() > 1) l.At(0)->Rename("Z");
        if (l.GetCount() > 1) l.At(0)->SetIndex(1);
        outer.Close(); },
     "added D@3 deleting B@1 extracting B@1 update[CZD]"},
    {"block too many closed", [](TNodes& l) { l.EndUpdate(); }, ""},
};

// What a handler does with the item it is told of, or with the first when it is told of the list.
const struct TDeed {
  const char* Name;
  std::function<void(TNodes&, TNode&)> Act;
} Deeds[] = {
    {"throws", [](TNodes&, TNode&) { throw EException("handler"); }},
    {"frees the item", [](TNodes&, TNode& item) { item.Free(); }},
    {"deletes the last", [](TNodes& list, TNode&) { list.Delete(list.GetCount() - 1); }},
    {"takes the item away", [](TNodes&, TNode& item) { item.SetCollection(Other); }},
    {"takes the item out and in again",
     [](TNodes& list, TNode& item) { item.SetCollection(nullptr); item.SetCollection(&list); }},
    {"moves the item", [](TNodes& list, TNode& i) { i.SetIndex(list.GetCount() - 1 - i.GetIndex()); }},
    {"inserts in front", [](TNodes& list, TNode&) { list.Insert("+"); }},
    {"frees the first and adds", [](TNodes& list, TNode&) { list.At(0)->Free(); list.Add("+"); }},
    {"clears", [](TNodes& list, TNode&) { list.Clear(); }},
    {"empties the other list", [](TNodes&, TNode&) { Other->Clear(); }},
    {"frees the sender", [](TNodes& list, TNode&) { list.Free(); }},
};
// clang-format on

TEST(Collection, TellsWhatHappensInOrder) {
  for (const TCase& operation : Operations) {
    TNodes list("ABC"), other("XY");
    Other = &other;
    operation.Run(list);
    EXPECT_EQ(list.TakeLog(), operation.Log) << operation.Name;
  }
  EXPECT_EQ(TNode::Alive, 0) << "a list that goes frees its items";
}

void ExpectSound(TNodes& list) {
  EXPECT_FALSE(list.IsUpdating());
  for (int i = 0; i < list.GetCount(); ++i) {
    TNode* node = list.At(i);
    EXPECT_TRUE(node->GetIndex() == i && node->GetCollection() == &list && !node->IsFreed()) << i;
  }
  list.TakeLog();
  const std::string at = "added N@" + std::to_string(list.GetCount());
  list.Add("N");
  EXPECT_EQ(list.TakeLog(), at + " update[" + list.Names() + "]");
}

void Survive(const TCase& operation, const std::string& hook, const TDeed& deed, int times) {
  TNodes& list = *new TNodes("ABC");
  TNodes other("XY");
  Other = &other;
  int acted = 0;
  list.Handler = [&](const std::string& told, TNode* item) {
    if (told != hook || acted == times || list.GetCount() == 0) return;
    ++acted;
    deed.Act(list, item ? *item : *list.At(0));
  };
  const std::string error = MessageOf([&] { operation.Run(list); });

  const std::string doing = acted > 0 ? deed.Name : "";
  EXPECT_EQ(error, doing == "throws" ? "handler" : "");
  ExpectSound(other);
  EXPECT_EQ(TNodes::Alive, doing == "frees the sender" ? 1 : 2);
  if (TNodes::Alive == 1) return;
  list.Handler = nullptr;
  const std::string log = list.TakeLog();
  EXPECT_TRUE(error.empty() || log.ends_with("update[" + list.Names() + "]") || log == "update X@1")
      << "what was done is told to the end: " << log;
  const bool cleared = hook == "extracting" && operation.Name == std::string("clear");
  EXPECT_TRUE(!cleared || list.Names().find_first_of("ABC") == std::string::npos) << list.Names();
  ExpectSound(list);
  list.Free();
}

// The handler acts once, or also on what its own deeds bring about.
TEST(Collection, SurvivesWhateverHandlersDo) {
  for (const TCase& operation : Operations) {
    for (const std::string hook : {"added", "extracting", "deleting", "update"}) {
      for (const TDeed& deed : Deeds) {
        for (const int times : {1, 3}) {
          SCOPED_TRACE(operation.Name + (" at " + hook) + " by one that " + deed.Name);
          Survive(operation, hook, deed, times);
          ASSERT_EQ(TNode::Alive, 0) << times << " times";
        }
      }
    }
  }
}

TEST(Collection, RefusesWhatItDoesNotHoldOrKnow) {
  TNodes list("AB");
  TStrings lines;
  EXPECT_EQ(MessageOf([&] { list.Delete(2); }), "There is no item with index 2");
  EXPECT_EQ(MessageOf([&] { list.At(0)->SetIndex(-1); }), "There is no item with index -1");
  EXPECT_EQ(MessageOf([&] { list.Assign(&lines); }),
            "There is no assignment from TStrings to TNodes");
  EXPECT_EQ(MessageOf([&] { list.At(0)->Assign(nullptr); }),
            "There is no assignment from nothing to TNode");
  EXPECT_EQ(list.Names() + list.TakeLog(), "AB");
}

TEST(Pin, KeepsMemoryUntilTheLastPinGoesButTellsAtOnce) {
  TNodes list("AB");
  TNode* node = list.At(0);
  TPin first(node);
  {
    const TPin second(node);
    const TPin moved(std::move(first));
    for (int i = 0; i < 2; ++i) node->Free();
    node->SetCollection(&list);
    EXPECT_EQ(list.Names() + list.TakeLog(), "Bextracting A@0 update[B]") << "told once";
    EXPECT_TRUE(node->IsFreed());
    EXPECT_EQ(TNode::Alive, 2);
  }
  EXPECT_EQ(TNode::Alive, 1);

  auto* ending = new TNodes("CD");
  const TPin pinned(ending);
  ending->Free();
  EXPECT_EQ(ending->TakeLog(), "extracting D@1 extracting C@0") << "but of no change";
  EXPECT_EQ(TNode::Alive, 1);
}

TEST(Owned, FreesItsItemUnlessItWentEarlierOrWasGivenUp) {
  TNodes list("AB");
  list.Handler = [](const std::string&, TNode*) { throw EException("handler"); };
  { const TOwned<TNode> owned(list.At(0)); }
  EXPECT_EQ(list.TakeLog(), "extracting A@0 update[B]");
  list.Handler = nullptr;

  TOwned<TNode> early(list.Add("C")), moved(list.At(0)), orphan(TNodes("D").At(0));
  EXPECT_FALSE(orphan);
  orphan.Reset();
  EXPECT_EQ(TNode::Alive, 2);
  list.Delete(1);
  EXPECT_EQ(early.Release(), nullptr);
  early = std::move(moved);
  EXPECT_EQ(early.Release(), list.At(0)) << "given up, so it stays";
}

std::string Log;

/// Writes down what it is told, by the names of both, and whether the other is still whole.
class TPart final : public TComponent {
 public:
  explicit TPart(const char* name, TComponent* owner = nullptr) : TComponent(owner) {
    SetName(name);
  }
  ~TPart() override {
    Destroying();
    Log += '~' + GetName().Utf8() + ' ';
  }
  TString ClassName() const override { return "TPart"; }
  using TComponent::Loading;

  void Notification(TComponent* component, TOperation operation) override {
    Log += GetName().Utf8() + (operation == opInsert ? '+' : '-') + component->GetName().Utf8();
    Log += operation == opRemove && !dynamic_cast<TPart*>(component) ? " broken " : " ";
    if (const auto handler = Handler) handler(component);
  }

  std::function<void(TComponent*)> Handler;
};

TEST(Component, OwnerFreesWhatItOwnsAndIsToldOfWhatGoesBefore) {
  Log.clear();
  {
    TPart owner("O");
    owner.SetDesigning(true);
    auto* first = new TPart("A", &owner);
    new TPart("B", first);
    first->Loading();
    EXPECT_EQ(first->GetComponentState(), (TComponentState{csDesigning, csLoading}));
    first->Loaded();
    EXPECT_EQ(first->GetComponentState(), TComponentState{csDesigning});
    (new TPart("C", &owner))->Free();
    TPart onStack("D", &owner);
    EXPECT_EQ(owner.GetComponentCount(), 2);
    EXPECT_EQ(owner.GetComponent(1)->GetOwner(), &owner);
  }
  EXPECT_EQ(Log, "O+ A+ O+ O-C ~C O+ O-D ~D ~O ~A ~B ");
  TPart full("O");
  full.Handler = [](TComponent*) { throw EException("full"); };
  EXPECT_THROW(TPart("A", &full), EException);
  EXPECT_EQ(full.GetComponentCount(), 0);
}

TEST(Component, FreeNotificationReachesTheOtherSideOnceWhicheverGoesFirst) {
  for (const bool backwards : {false, true}) {
    auto first = std::make_unique<TPart>("1");
    TPart second("2"), third("3"), mutual("4");
    for (TPart* other : {&second, &third, &second})
      (backwards ? other : first.get())->FreeNotification(backwards ? first.get() : other);
    first->FreeNotification(first.get());
    first->FreeNotification(nullptr);
    (backwards ? first.get() : &third)->RemoveFreeNotification(backwards ? &third : first.get());
    first->FreeNotification(&mutual);
    mutual.FreeNotification(first.get());
    first->RemoveFreeNotification(&mutual);
    Log.clear();
    first.reset();
    EXPECT_TRUE(Log == "2-1 4-1 ~1 " || Log == "4-1 2-1 ~1 ") << Log;
  }
}

// Whoever is still there after the worst is freed by the test, which must find all gone, once.
TEST(Component, GoesWhateverTheOnesItTellsDo) {
  TPart* owner = nullptr;
  TPart* other = nullptr;
  bool byFree = false;
  // clang-format off
  const std::pair<const char*, std::function<void(TPart*)>> deeds[] = {
      {"throws", [](TPart*) { throw EException("watcher"); }},
      {"frees another watcher", [&](TPart*) { std::exchange(other, new TPart("x"))->Free(); }},
      {"frees the owner", [&](TPart*) { owner->Free(); }},
      {"frees what goes", [&](TPart* going) { if (byFree) going->Free(); }},
      {"watches again", [&](TPart* going) { going->FreeNotification(other); }},
  };
  // clang-format on
  for (const auto& [name, deed] : deeds) {
    for (const std::string how : {"OO", "OC", "OS", "wO", "wC", "wS"}) {
      SCOPED_TRACE(std::string(name) + ", told and going: " + how);
      byFree = how[1] != 'S';  // S: the child, at the end of a scope
      owner = new TPart("O");
      auto* child = new TPart("C", owner);
      other = new TPart("o");
      TPart watcher("w");
      for (TPart* part : {&watcher, other}) child->FreeNotification(part);
      (how[0] == 'O' ? owner : &watcher)->Handler = [&](TComponent* part) {
        deed(static_cast<TPart*>(part));
      };
      Log.clear();
      if (byFree)
        (how[1] == 'O' ? owner : child)->Free();
      else
        delete child;
      if (Log.find("~O") == std::string::npos) owner->Free();
      other->Free();
      for (const char* gone : {"~O ", "~C ", "~o "})
        EXPECT_TRUE(Log.find(gone) < Log.size() && Log.find(gone) == Log.rfind(gone)) << Log;
      EXPECT_NE(Log.find("w-C "), std::string::npos) << Log;
    }
  }
}

}  // namespace
}  // namespace fzy
